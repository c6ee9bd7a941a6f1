; Conversions of the float in R12:R13 to integers, towards zero, result in R12:R13 or R12..R15;
; a value outside the integer's range gives its low bits, so that signed and unsigned are one.
    .text
    .global __mspabi_fixfli
    .global __mspabi_fixful
__mspabi_fixfli:
__mspabi_fixful:
    mov     r13, r15
    mov     r13, r14
    rla     r14
    swpb    r14
    mov.b   r14, r14
    and     #0x007f, r13
    bis     #0x0080, r13
    ; The exponent at which the significand stands where it is.
    sub     #150, r14
    jz      fixf_sign
    jge     fixf_left
    cmp     #-23, r14
    jl      fixf_zero
fixf_right:
    clrc
    rrc     r13
    rrc     r12
    inc     r14
    jnz     fixf_right
    jmp     fixf_sign
fixf_left:
    cmp     #32, r14
    jge     fixf_zero
fixf_left_bit:
    rla     r12
    rlc     r13
    dec     r14
    jnz     fixf_left_bit
fixf_sign:
    tst     r15
    jge     fixf_done
    inv     r12
    inv     r13
    inc     r12
    adc     r13
fixf_done:
    ret
fixf_zero:
    clr     r12
    clr     r13
    ret
