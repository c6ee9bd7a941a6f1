; 64-bit shifts of R12..R15 by the count at 2(R1), result in R12..R15. Clobbers R11.
; A count of 64 or more gives what that many single steps would.
    .text
    .global __ashldi3
    .global __lshrdi3
    .global __ashrdi3

__ashldi3:
    mov     2(r1), r11
ashl_word:
    cmp     #16, r11
    jlo     ashl_test
    mov     r14, r15
    mov     r13, r14
    mov     r12, r13
    clr     r12
    sub     #16, r11
    jmp     ashl_word
ashl_bit:
    rla     r12
    rlc     r13
    rlc     r14
    rlc     r15
    dec     r11
ashl_test:
    tst     r11
    jnz     ashl_bit
    ret

__lshrdi3:
    mov     2(r1), r11
lshr_word:
    cmp     #16, r11
    jlo     lshr_test
    mov     r13, r12
    mov     r14, r13
    mov     r15, r14
    clr     r15
    sub     #16, r11
    jmp     lshr_word
lshr_bit:
    clrc
    rrc     r15
    rrc     r14
    rrc     r13
    rrc     r12
    dec     r11
lshr_test:
    tst     r11
    jnz     lshr_bit
    ret

__ashrdi3:
    mov     2(r1), r11
ashr_word:
    cmp     #16, r11
    jlo     ashr_test
    mov     r13, r12
    mov     r14, r13
    mov     r15, r14
    ; The word that follows is all copies of the sign.
    rla     r15
    subc    r15, r15
    inv     r15
    sub     #16, r11
    jmp     ashr_word
ashr_bit:
    rra     r15
    rrc     r14
    rrc     r13
    rrc     r12
    dec     r11
ashr_test:
    tst     r11
    jnz     ashr_bit
    ret
