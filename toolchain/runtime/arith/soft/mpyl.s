; long __mspabi_mpyl(long, long): R12:R13 = R12:R13 * R14:R15. Clobbers R11, R14, R15.
    .text
    .global __mspabi_mpyl
__mspabi_mpyl:
    push    r10
    clr     r10
    clr     r11
    jmp     mpyl_test
mpyl_bit:
    clrc
    rrc     r15
    rrc     r14
    jnc     mpyl_even
    add     r12, r10
    addc    r13, r11
mpyl_even:
    rla     r12
    rlc     r13
mpyl_test:
    tst     r14
    jnz     mpyl_bit
    tst     r15
    jnz     mpyl_bit
    mov     r10, r12
    mov     r11, r13
    pop     r10
    ret
