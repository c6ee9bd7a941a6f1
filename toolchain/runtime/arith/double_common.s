; What the double-precision routines share.
;
; An unpacked number is a significand of four words with its leading one in bit 63 (the eleven
; bits below the 53 of the format are guard bits), a biased exponent as a signed word, and a
; word whose bit 15 is the sign. X stands in R12..R15, R7 and R5; Y in R8..R11, R6 and R4.
; Zero has an empty significand and the exponent -2048; infinity and NaN have 2047.
    .text
    .global __double_enter
    .global __double_swap
    .global __double_screen
    .global __double_shift_right
    .global __double_pack
    .global __double_infinity
    .global __double_zero
    .global __double_nan
    .global __double_leave

; Saves R4 to R10 below its own return address and unpacks both operands. The first one
; (given in R8..R11) becomes X, the second (given in R12..R15) becomes Y.
__double_enter:
    push    r9
    push    r8
    push    r7
    push    r6
    push    r5
    push    r4
    mov     12(r1), r4
    mov     r10, 12(r1)
    push    r4
    call    #unpack
    call    #__double_swap
unpack:
    mov     r15, r5
    mov     r15, r7
    and     #0x7ff0, r7
    rra     r7
    rra     r7
    rra     r7
    rra     r7
    and     #0x000f, r15
    tst     r7
    jz      unpack_justify
    bis     #0x0010, r15
unpack_justify:
    ; Eleven places to the left: a byte, then three bits.
    swpb    r15
    swpb    r14
    xor     r14, r15
    and     #0xff00, r14
    xor     r14, r15
    swpb    r13
    xor     r13, r14
    and     #0xff00, r13
    xor     r13, r14
    swpb    r12
    xor     r12, r13
    and     #0xff00, r12
    xor     r12, r13
    call    #unpack_shift
    call    #unpack_shift
    call    #unpack_shift
    tst     r7
    jnz     unpack_done
    ; Subnormal, or zero.
    mov     r12, r7
    bis     r13, r7
    bis     r14, r7
    bis     r15, r7
    tst     r7
    mov     #-2048, r7
    jz      unpack_done
    mov     #1, r7
unpack_normalise:
    tst     r15
    jn      unpack_done
    call    #unpack_shift
    dec     r7
    jmp     unpack_normalise
unpack_done:
    ret
unpack_shift:
    rla     r12
    rlc     r13
    rlc     r14
    rlc     r15
    ret

; Exchanges X and Y.
__double_swap:
    xor     r8, r12
    xor     r12, r8
    xor     r8, r12
    xor     r9, r13
    xor     r13, r9
    xor     r9, r13
    xor     r10, r14
    xor     r14, r10
    xor     r10, r14
    xor     r11, r15
    xor     r15, r11
    xor     r11, r15
    xor     r6, r7
    xor     r7, r6
    xor     r6, r7
    xor     r4, r5
    xor     r5, r4
    xor     r4, r5
    ret

; Leaves the routine with NaN if X or Y is one; carry tells that one of them is infinite.
; To be called at the depth of the saved registers.
__double_screen:
    cmp     #2047, r7
    jne     screen_second
    rla     r15
    bis     r14, r15
    bis     r13, r15
    bis     r12, r15
    tst     r15
    jnz     screen_nan
    cmp     #2047, r6
    jne     screen_infinite
screen_second:
    cmp     #2047, r6
    jne     screen_finite
    rla     r11
    bis     r10, r11
    bis     r9, r11
    bis     r8, r11
    tst     r11
    jnz     screen_nan
screen_infinite:
    setc
    ret
screen_finite:
    clrc
    ret
screen_nan:
    incd    r1
__double_nan:
    mov     #0x7ff8, r15
    jmp     special_rest
__double_infinity:
    mov     #0x7ff0, r15
    jmp     special_sign
__double_zero:
    clr     r15
special_sign:
    and     #0x8000, r5
    bis     r5, r15
special_rest:
    clr     r14
    clr     r13
    clr     r12
    jmp     __double_leave

; Shifts the significand of X right by R4 places, gathering what falls out in bit 0.
__double_shift_right:
    cmp     #65, r4
    jlo     shift_words
    mov     #64, r4
shift_words:
    cmp     #16, r4
    jlo     shift_test
    tst     r12
    mov     r13, r12
    mov     r14, r13
    mov     r15, r14
    mov     #0, r15
    jz      shift_exact
    bis     #1, r12
shift_exact:
    sub     #16, r4
    jmp     shift_words
shift_bit:
    clrc
    rrc     r15
    rrc     r14
    rrc     r13
    rrc     r12
    jnc     shift_next
    bis     #1, r12
shift_next:
    dec     r4
shift_test:
    tst     r4
    jnz     shift_bit
    ret

; The common end: X, not yet normalised and with all lost bits in bit 0, is rounded to the
; nearest double (ties to even) in R12..R15, and the saved registers return.
__double_pack:
    mov     r12, r4
    bis     r13, r4
    bis     r14, r4
    bis     r15, r4
    tst     r4
    jz      __double_zero
pack_words:
    tst     r15
    jn      pack_range
    jnz     pack_shift
    mov     r14, r15
    mov     r13, r14
    mov     r12, r13
    clr     r12
    sub     #16, r7
    jmp     pack_words
pack_shift:
    call    #unpack_shift
    dec     r7
    tst     r15
    jge     pack_shift
pack_range:
    cmp     #2047, r7
    jge     __double_infinity
    ; The leading one adds 1 to the exponent field when it is put in its place.
    dec     r7
    jge     pack_round
    mov     r7, r4
    inv     r4
    inc     r4
    call    #__double_shift_right
    clr     r7
pack_round:
    mov     r12, r4
    and     #0x07ff, r4
    add     #0x0400, r12
    adc     r13
    adc     r14
    adc     r15
    rrc     r15
    rrc     r14
    rrc     r13
    rrc     r12
    cmp     #0x0400, r4
    jne     pack_place
    bic     #0x0400, r12
pack_place:
    call    #pack_halve
    call    #pack_halve
    mov.b   r13, r4
    swpb    r4
    swpb    r12
    mov.b   r12, r12
    bis     r4, r12
    mov.b   r14, r4
    swpb    r4
    swpb    r13
    mov.b   r13, r13
    bis     r4, r13
    mov.b   r15, r4
    swpb    r4
    swpb    r14
    mov.b   r14, r14
    bis     r4, r14
    swpb    r15
    mov.b   r15, r15
    rla     r7
    rla     r7
    rla     r7
    rla     r7
    add     r7, r15
    cmp     #0x7ff0, r15
    jhs     __double_infinity
    and     #0x8000, r5
    bis     r5, r15
__double_leave:
    pop     r4
    pop     r5
    pop     r6
    pop     r7
    pop     r8
    pop     r9
    pop     r10
    ret
pack_halve:
    clrc
    rrc     r15
    rrc     r14
    rrc     r13
    rrc     r12
    ret
