; What the single-precision routines share.
;
; An unpacked number is a significand of two words with its leading one in bit 31 (the eight
; bits below the 24 of the format are guard bits), a biased exponent as a signed word, and a
; word whose bit 15 is the sign. X stands in R12:R13, R10 and R8; Y in R14:R15, R11 and R9.
; Zero has an empty significand and the exponent -512; infinity and NaN have 255.
    .text
    .global __float_enter
    .global __float_swap
    .global __float_screen
    .global __float_shift_right
    .global __float_pack
    .global __float_infinity
    .global __float_zero
    .global __float_nan

; Saves R8 to R10 below its own return address and unpacks both operands: the first one
; becomes Y, the second X.
__float_enter:
    push    r9
    push    r8
    mov     4(r1), r8
    mov     r10, 4(r1)
    push    r8
    call    #unpack
    call    #__float_swap
unpack:
    mov     r13, r8
    mov     r13, r10
    rla     r10
    swpb    r10
    mov.b   r10, r10
    swpb    r13
    bis     #0x8000, r13
    tst     r10
    jnz     unpack_justify
    bic     #0x8000, r13
unpack_justify:
    and     #0xff00, r13
    swpb    r12
    xor     r12, r13
    and     #0xff00, r12
    xor     r12, r13
    tst     r10
    jnz     unpack_done
    ; Subnormal, or zero.
    mov     r12, r10
    bis     r13, r10
    tst     r10
    mov     #-512, r10
    jz      unpack_done
    mov     #1, r10
unpack_normalise:
    tst     r13
    jn      unpack_done
    rla     r12
    rlc     r13
    dec     r10
    jmp     unpack_normalise
unpack_done:
    ret

; Exchanges X and Y.
__float_swap:
    xor     r14, r12
    xor     r12, r14
    xor     r14, r12
    xor     r15, r13
    xor     r13, r15
    xor     r15, r13
    xor     r11, r10
    xor     r10, r11
    xor     r11, r10
    xor     r9, r8
    xor     r8, r9
    xor     r9, r8
    ret

; Leaves the routine with NaN if X or Y is one; carry tells that one of them is infinite.
; To be called at the depth of the saved registers.
__float_screen:
    cmp     #255, r10
    jne     screen_second
    rla     r13
    bis     r12, r13
    tst     r13
    jnz     screen_nan
    cmp     #255, r11
    jne     screen_infinite
screen_second:
    cmp     #255, r11
    jne     screen_finite
    rla     r15
    bis     r14, r15
    tst     r15
    jnz     screen_nan
screen_infinite:
    setc
    ret
screen_finite:
    clrc
    ret
screen_nan:
    incd    r1
__float_nan:
    mov     #0x7fc0, r13
    jmp     special_rest
__float_infinity:
    mov     #0x7f80, r13
    jmp     special_sign
__float_zero:
    clr     r13
special_sign:
    and     #0x8000, r8
    bis     r8, r13
special_rest:
    clr     r12
    jmp     leave

; Shifts the significand of X right by R9 places, gathering what falls out in bit 0.
__float_shift_right:
    cmp     #33, r9
    jlo     shift_words
    mov     #32, r9
shift_words:
    cmp     #16, r9
    jlo     shift_test
    tst     r12
    mov     r13, r12
    mov     #0, r13
    jz      shift_exact
    bis     #1, r12
shift_exact:
    sub     #16, r9
    jmp     shift_words
shift_bit:
    clrc
    rrc     r13
    rrc     r12
    jnc     shift_next
    bis     #1, r12
shift_next:
    dec     r9
shift_test:
    tst     r9
    jnz     shift_bit
    ret

; The common end: X, not yet normalised and with all lost bits in bit 0, is rounded to the
; nearest float (ties to even) in R12:R13, and the saved registers return.
__float_pack:
    mov     r12, r9
    bis     r13, r9
    tst     r9
    jz      __float_zero
    tst     r13
    jn      pack_range
    jnz     pack_shift
    mov     r12, r13
    clr     r12
    sub     #16, r10
    tst     r13
    jn      pack_range
pack_shift:
    rla     r12
    rlc     r13
    dec     r10
    tst     r13
    jge     pack_shift
pack_range:
    cmp     #255, r10
    jge     __float_infinity
    ; The leading one adds 1 to the exponent field when it is put in its place.
    dec     r10
    jge     pack_round
    mov     r10, r9
    inv     r9
    inc     r9
    call    #__float_shift_right
    clr     r10
pack_round:
    mov.b   r12, r9
    add     #0x0080, r12
    adc     r13
    rrc     r13
    rrc     r12
    cmp     #0x0080, r9
    jne     pack_place
    bic     #0x0080, r12
pack_place:
    ; The exponent field is one bit above the byte boundary: rotate by one less than eight.
    rla     r12
    rlc     r13
    mov     #0, r9
    rlc     r9
    mov.b   r13, r11
    swpb    r11
    swpb    r12
    mov.b   r12, r12
    bis     r11, r12
    swpb    r13
    mov.b   r13, r13
    swpb    r9
    add     r9, r13
    swpb    r10
    clrc
    rrc     r10
    add     r10, r13
    cmp     #0x7f80, r13
    jhs     __float_infinity
    and     #0x8000, r8
    bis     r8, r13
leave:
    pop     r8
    pop     r9
    pop     r10
    ret
