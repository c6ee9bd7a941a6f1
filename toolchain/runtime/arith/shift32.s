; 32-bit shifts of R12:R13 by R14, result in R12:R13. Clobbers R14.
; A count of 32 or more gives what that many single steps would.
    .text
    .global __mspabi_slll
    .global __mspabi_srll
    .global __mspabi_sral

__mspabi_slll:
    cmp     #16, r14
    jlo     slll_test
    mov     r12, r13
    clr     r12
    sub     #16, r14
    cmp     #16, r14
    jlo     slll_test
    clr     r13
    ret
slll_bit:
    rla     r12
    rlc     r13
    dec     r14
slll_test:
    tst     r14
    jnz     slll_bit
    ret

__mspabi_srll:
    cmp     #16, r14
    jlo     srll_test
    mov     r13, r12
    clr     r13
    sub     #16, r14
    cmp     #16, r14
    jlo     srll_test
    clr     r12
    ret
srll_bit:
    clrc
    rrc     r13
    rrc     r12
    dec     r14
srll_test:
    tst     r14
    jnz     srll_bit
    ret

__mspabi_sral:
    cmp     #32, r14
    jlo     sral_range
    mov     #31, r14
sral_range:
    cmp     #16, r14
    jlo     sral_test
    mov     r13, r12
    rla     r13
    subc    r13, r13
    inv     r13
    sub     #16, r14
    jmp     sral_test
sral_bit:
    rra     r13
    rrc     r12
    dec     r14
sral_test:
    tst     r14
    jnz     sral_bit
    ret
