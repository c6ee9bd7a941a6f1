; long long __mspabi_mpyll(long long, long long): R12..R15 = R8..R11 * R12..R15.
; Preserves R8 to R10, clobbers R11.
    .text
    .global __mspabi_mpyll
__mspabi_mpyll:
    push    r4
    push    r5
    push    r6
    push    r7
    push    r8
    push    r9
    push    r10
    clr     r4
    clr     r5
    clr     r6
    clr     r7
    jmp     mpyll_test
mpyll_bit:
    clrc
    rrc     r15
    rrc     r14
    rrc     r13
    rrc     r12
    jnc     mpyll_even
    add     r8, r4
    addc    r9, r5
    addc    r10, r6
    addc    r11, r7
mpyll_even:
    rla     r8
    rlc     r9
    rlc     r10
    rlc     r11
mpyll_test:
    tst     r12
    jnz     mpyll_bit
    tst     r13
    jnz     mpyll_bit
    tst     r14
    jnz     mpyll_bit
    tst     r15
    jnz     mpyll_bit
    mov     r4, r12
    mov     r5, r13
    mov     r6, r14
    mov     r7, r15
    pop     r10
    pop     r9
    pop     r8
    pop     r7
    pop     r6
    pop     r5
    pop     r4
    ret
