; void *memcpy(void *R12, const void *R13, size_t R14). Words at a time where both addresses
; are even.
    .text
    .global memcpy
memcpy:
    mov     r12, r15
    tst     r14
    jz      memcpy_done
    mov     r12, r11
    bis     r13, r11
    bit     #1, r11
    jnz     memcpy_byte
    sub     #2, r14
    jlo     memcpy_last
memcpy_word:
    mov     @r13+, r11
    mov     r11, 0(r15)
    incd    r15
    sub     #2, r14
    jhs     memcpy_word
memcpy_last:
    bit     #1, r14
    jz      memcpy_done
    mov.b   @r13, 0(r15)
    ret
memcpy_byte:
    mov.b   @r13+, r11
    mov.b   r11, 0(r15)
    inc     r15
    dec     r14
    jnz     memcpy_byte
memcpy_done:
    ret
