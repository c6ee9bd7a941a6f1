; Conversions of the double in R12..R15 to integers, towards zero; a value outside the
; integer's range gives its low bits. Signed and unsigned need no difference then.
    .text
    .global __mspabi_fixdli
    .global __mspabi_fixdul
    .global __mspabi_fixdlli
    .global __mspabi_fixdull
__mspabi_fixdli:
__mspabi_fixdul:
__mspabi_fixdlli:
__mspabi_fixdull:
    push    r15
    mov     r15, r11
    and     #0x7ff0, r11
    rra     r11
    rra     r11
    rra     r11
    rra     r11
    and     #0x000f, r15
    bis     #0x0010, r15
    ; The exponent at which the significand stands where it is.
    sub     #1075, r11
    jz      fixd_sign
    jge     fixd_left
    cmp     #-52, r11
    jl      fixd_zero
fixd_right_word:
    cmp     #-15, r11
    jge     fixd_right_test
    mov     r13, r12
    mov     r14, r13
    mov     r15, r14
    clr     r15
    add     #16, r11
    jmp     fixd_right_word
fixd_right:
    clrc
    rrc     r15
    rrc     r14
    rrc     r13
    rrc     r12
    inc     r11
fixd_right_test:
    tst     r11
    jnz     fixd_right
    jmp     fixd_sign
fixd_left:
    cmp     #64, r11
    jge     fixd_zero
fixd_left_bit:
    rla     r12
    rlc     r13
    rlc     r14
    rlc     r15
    dec     r11
    jnz     fixd_left_bit
fixd_sign:
    pop     r11
    tst     r11
    jge     fixd_done
    inv     r12
    inv     r13
    inv     r14
    inv     r15
    inc     r12
    adc     r13
    adc     r14
    adc     r15
fixd_done:
    ret
fixd_zero:
    incd    r1
    clr     r12
    clr     r13
    clr     r14
    clr     r15
    ret
