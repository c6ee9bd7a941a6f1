; int __mspabi_mpyi(int, int): R12 = R12 * R13. Clobbers R13, R14.
    .text
    .global __mspabi_mpyi
__mspabi_mpyi:
    clr     r14
    jmp     mpyi_test
mpyi_bit:
    clrc
    rrc     r13
    jnc     mpyi_even
    add     r12, r14
mpyi_even:
    rla     r12
mpyi_test:
    tst     r13
    jnz     mpyi_bit
    mov     r14, r12
    ret
