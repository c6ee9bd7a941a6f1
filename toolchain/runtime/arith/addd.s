; double __mspabi_addd(double, double), __mspabi_subd: R12..R15 = R8..R11 +- R12..R15.
; Preserves R8 to R10, clobbers R11.
    .text
    .global __mspabi_addd
    .global __mspabi_subd
__mspabi_subd:
    xor     #0x8000, r15
__mspabi_addd:
    call    #__double_enter
    call    #__double_screen
    jc      addd_infinite
    cmp     r7, r6
    jge     addd_ordered
    call    #__double_swap
addd_ordered:
    ; Y has the larger exponent, X moves down to it.
    xor     r4, r5
    push    r5
    mov     r4, r5
    mov     r6, r4
    sub     r7, r4
    mov     r6, r7
    call    #__double_shift_right
    pop     r4
    tst     r4
    jn      addd_opposite
    add     r8, r12
    addc    r9, r13
    addc    r10, r14
    addc    r11, r15
    jnc     addd_pack
    rrc     r15
    rrc     r14
    rrc     r13
    rrc     r12
    jnc     addd_carried
    bis     #1, r12
addd_carried:
    inc     r7
addd_pack:
    br      #__double_pack

addd_opposite:
    sub     r12, r8
    subc    r13, r9
    subc    r14, r10
    subc    r15, r11
    jc      addd_positive
    xor     #0x8000, r5
    inv     r8
    inv     r9
    inv     r10
    inv     r11
    inc     r8
    adc     r9
    adc     r10
    adc     r11
addd_positive:
    mov     r8, r12
    mov     r9, r13
    mov     r10, r14
    mov     r11, r15
    bis     r8, r11
    bis     r9, r11
    bis     r10, r11
    tst     r11
    jnz     addd_pack
    ; An exact difference of nothing is +0.
    clr     r5
    jmp     addd_pack

addd_infinite:
    cmp     r6, r7
    jeq     addd_infinities
    ; With only one infinity, its exponent is the larger one.
    jge     addd_infinity
    mov     r4, r5
    jmp     addd_infinity
addd_infinities:
    xor     r5, r4
    jn      addd_nan
addd_infinity:
    br      #__double_infinity
addd_nan:
    br      #__double_nan
