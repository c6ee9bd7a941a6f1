; 16-bit division: R12 by R13, quotient or remainder in R12. Clobbers R11, R13 to R15.
; A divisor of zero gives the quotient 65535.
    .text
    .global __mspabi_divu
    .global __mspabi_remu
    .global __mspabi_divi
    .global __mspabi_remi

__mspabi_remu:
    call    #__mspabi_divu
    mov     r14, r12
    ret

; Also leaves the remainder in R14, which the other three entries rely on; keeps R11.
__mspabi_divu:
    clr     r14
    mov     #16, r15
divu_bit:
    rla     r12
    rlc     r14
    jc      divu_take
    cmp     r13, r14
    jlo     divu_next
divu_take:
    sub     r13, r14
    bis     #1, r12
divu_next:
    dec     r15
    jnz     divu_bit
    ret

__mspabi_divi:
    mov     r12, r11
    xor     r13, r11
    call    #divi_magnitudes
    jmp     divi_sign

__mspabi_remi:
    mov     r12, r11
    call    #divi_magnitudes
    mov     r14, r12
divi_sign:
    tst     r11
    jge     divi_done
    inv     r12
    inc     r12
divi_done:
    ret

divi_magnitudes:
    tst     r12
    jge     divi_divisor
    inv     r12
    inc     r12
divi_divisor:
    tst     r13
    jge     __mspabi_divu
    inv     r13
    inc     r13
    jmp     __mspabi_divu
