; size_t strlen(const char *R12).
    .text
    .global strlen
strlen:
    mov     r12, r13
strlen_byte:
    mov.b   @r13+, r14
    tst.b   r14
    jnz     strlen_byte
    sub     r12, r13
    mov     r13, r12
    dec     r12
    ret
