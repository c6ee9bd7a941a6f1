; 32-bit division: R12:R13 by R14:R15, quotient or remainder in R12:R13.
; Clobbers R11, R14, R15. A divisor of zero gives the quotient 2^32 - 1.
    .text
    .global __mspabi_divul
    .global __mspabi_remul
    .global __mspabi_divli
    .global __mspabi_remli

__mspabi_divul:
    push    r10
    push    r9
    call    #divul_both
    pop     r9
    pop     r10
    ret

__mspabi_remul:
    push    r10
    push    r9
    call    #divul_both
    mov     r10, r12
    mov     r11, r13
    pop     r9
    pop     r10
    ret

; Quotient in R12:R13, remainder in R10:R11; clobbers R9.
divul_both:
    clr     r10
    clr     r11
    mov     #32, r9
    tst     r13
    jnz     divul_bit
    ; A dividend below 65536 needs only its own 16 steps.
    mov     r12, r13
    clr     r12
    mov     #16, r9
divul_bit:
    rla     r12
    rlc     r13
    rlc     r10
    rlc     r11
    jc      divul_take
    cmp     r15, r11
    jlo     divul_next
    jne     divul_take
    cmp     r14, r10
    jlo     divul_next
divul_take:
    sub     r14, r10
    subc    r15, r11
    bis     #1, r12
divul_next:
    dec     r9
    jnz     divul_bit
    ret

__mspabi_divli:
    push    r10
    push    r9
    push    r13
    xor     r15, 0(r1)
    call    #divli_magnitudes
    jmp     divli_sign

__mspabi_remli:
    push    r10
    push    r9
    push    r13
    call    #divli_magnitudes
    mov     r10, r12
    mov     r11, r13
divli_sign:
    pop     r9
    tst     r9
    jge     divli_done
    inv     r12
    inv     r13
    inc     r12
    adc     r13
divli_done:
    pop     r9
    pop     r10
    ret

divli_magnitudes:
    tst     r13
    jge     divli_divisor
    inv     r12
    inv     r13
    inc     r12
    adc     r13
divli_divisor:
    tst     r15
    jge     divul_both
    inv     r14
    inv     r15
    inc     r14
    adc     r15
    jmp     divul_both
