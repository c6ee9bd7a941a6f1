; long __mspabi_mpyl(long, long): R12:R13 = R12:R13 * R14:R15 by the 16-bit multiplier.
; Clobbers R11. The multiplier's registers: 0 operand, 4 operand of multiply and add, 8 second
; operand and start, 10 and 12 result, 14 its carry.
    .text
    .global __mspabi_mpyl
__mspabi_mpyl:
    push    r2
    dint
    nop
    mov     r12, &__multiplier
    mov     r14, &__multiplier+8
    mov     &__multiplier+10, r11
    ; What the low words carry over, and the two mixed products.
    mov     &__multiplier+12, &__multiplier+10
    mov     r12, &__multiplier+4
    mov     r15, &__multiplier+8
    mov     r13, &__multiplier+4
    mov     r14, &__multiplier+8
    mov     &__multiplier+10, r13
    mov     r11, r12
    pop     r2
    ret
