; void *memset(void *R12, int R13, size_t R14).
    .text
    .global memset
memset:
    mov     r12, r15
    tst     r14
    jz      memset_done
    mov.b   r13, r13
    bit     #1, r15
    jz      memset_even
    mov.b   r13, 0(r15)
    inc     r15
    dec     r14
memset_even:
    mov     r13, r11
    swpb    r11
    bis     r13, r11
    sub     #2, r14
    jlo     memset_last
memset_word:
    mov     r11, 0(r15)
    incd    r15
    sub     #2, r14
    jhs     memset_word
memset_last:
    bit     #1, r14
    jz      memset_done
    mov.b   r11, 0(r15)
memset_done:
    ret
