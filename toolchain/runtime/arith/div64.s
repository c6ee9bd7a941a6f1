; 64-bit division: R8..R11 by R12..R15, quotient or remainder in R12..R15.
; Preserves R8 to R10, clobbers R11. A divisor of zero gives a quotient of ones.
    .text
    .global __mspabi_divull
    .global __mspabi_remull
    .global __mspabi_divlli
    .global __mspabi_remlli

__mspabi_divull:
    call    #divull_enter
    call    #divull_both
    br      #divull_quotient

__mspabi_remull:
    call    #divull_enter
    call    #divull_both
    br      #divull_remainder

__mspabi_divlli:
    call    #divull_enter
    push    r11
    xor     r15, 0(r1)
    call    #divlli_magnitudes
    call    #divull_both
    pop     r4
    tst     r4
    jge     divull_quotient
    inv     r8
    inv     r9
    inv     r10
    inv     r11
    inc     r8
    adc     r9
    adc     r10
    adc     r11
divull_quotient:
    mov     r8, r12
    mov     r9, r13
    mov     r10, r14
    mov     r11, r15
    jmp     divull_leave

__mspabi_remlli:
    call    #divull_enter
    push    r11
    call    #divlli_magnitudes
    call    #divull_both
    pop     r8
    tst     r8
    jge     divull_remainder
    inv     r4
    inv     r5
    inv     r6
    inv     r7
    inc     r4
    adc     r5
    adc     r6
    adc     r7
divull_remainder:
    mov     r4, r12
    mov     r5, r13
    mov     r6, r14
    mov     r7, r15
divull_leave:
    pop     r4
    pop     r5
    pop     r6
    pop     r7
    pop     r8
    pop     r9
    pop     r10
    ret

; Saves R4 to R10 below its own return address.
divull_enter:
    push    r9
    push    r8
    push    r7
    push    r6
    push    r5
    push    r4
    mov     12(r1), r4
    mov     r10, 12(r1)
    push    r4
    mov     2(r1), r4
    ret

divlli_magnitudes:
    tst     r11
    jge     divlli_divisor
    inv     r8
    inv     r9
    inv     r10
    inv     r11
    inc     r8
    adc     r9
    adc     r10
    adc     r11
divlli_divisor:
    tst     r15
    jge     divlli_positive
    inv     r12
    inv     r13
    inv     r14
    inv     r15
    inc     r12
    adc     r13
    adc     r14
    adc     r15
divlli_positive:
    ret

; Quotient in R8..R11, remainder in R4..R7. The count of steps lies on the stack.
divull_both:
    clr     r4
    clr     r5
    clr     r6
    clr     r7
    push    #64
divull_skip:
    ; Each empty top word of the dividend saves sixteen steps.
    tst     r11
    jnz     divull_bit
    mov     r10, r11
    mov     r9, r10
    mov     r8, r9
    clr     r8
    sub     #16, 0(r1)
    jnz     divull_skip
    jmp     divull_end
divull_bit:
    rla     r8
    rlc     r9
    rlc     r10
    rlc     r11
    rlc     r4
    rlc     r5
    rlc     r6
    rlc     r7
    jc      divull_take
    cmp     r15, r7
    jlo     divull_next
    jne     divull_take
    cmp     r14, r6
    jlo     divull_next
    jne     divull_take
    cmp     r13, r5
    jlo     divull_next
    jne     divull_take
    cmp     r12, r4
    jlo     divull_next
divull_take:
    sub     r12, r4
    subc    r13, r5
    subc    r14, r6
    subc    r15, r7
    bis     #1, r8
divull_next:
    dec     0(r1)
    jnz     divull_bit
divull_end:
    incd    r1
    ret
