; void *memmove(void *R12, const void *R13, size_t R14).
    .text
    .global memmove
memmove:
    cmp     r12, r13
    jlo     memmove_down
    br      #memcpy
memmove_down:
    ; The target lies higher: from the end on.
    mov     r12, r15
    add     r14, r15
    add     r14, r13
    tst     r14
    jz      memmove_done
memmove_byte:
    dec     r13
    dec     r15
    mov.b   @r13, 0(r15)
    dec     r14
    jnz     memmove_byte
memmove_done:
    ret
