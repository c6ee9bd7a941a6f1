; int __mspabi_mpyi(int, int): R12 = R12 * R13 by the 16-bit part of the multiplier.
    .text
    .global __mspabi_mpyi
__mspabi_mpyi:
    push    r2
    dint
    nop
    mov     r12, &__multiplier
    mov     r13, &__multiplier+8
    mov     &__multiplier+10, r12
    pop     r2
    ret
