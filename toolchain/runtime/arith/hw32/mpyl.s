; long __mspabi_mpyl(long, long): R12:R13 = R12:R13 * R14:R15 by the 32-bit multiplier. Its
; registers: 16 and 18 operand, 32 and 34 second operand and start, 36 to 42 result.
    .text
    .global __mspabi_mpyl
__mspabi_mpyl:
    push    r2
    dint
    nop
    mov     r12, &__multiplier+16
    mov     r13, &__multiplier+18
    mov     r14, &__multiplier+32
    mov     r15, &__multiplier+34
    ; The result's second word takes eight cycles from the start (SLAU208, 32-bit hardware
    ; multiplier, result availability); these and the move before its reading are more.
    nop
    nop
    nop
    nop
    nop
    mov     &__multiplier+36, r12
    mov     &__multiplier+38, r13
    pop     r2
    ret
