; float __mspabi_addf(float, float), __mspabi_subf: R12:R13 = R12:R13 +- R14:R15.
; Clobbers R11, R14, R15.
    .text
    .global __mspabi_addf
    .global __mspabi_subf
__mspabi_subf:
    xor     #0x8000, r15
__mspabi_addf:
    call    #__float_enter
    call    #__float_screen
    jc      addf_infinite
    cmp     r10, r11
    jge     addf_ordered
    call    #__float_swap
addf_ordered:
    ; Y has the larger exponent, X moves down to it.
    xor     r9, r8
    push    r8
    mov     r9, r8
    mov     r11, r9
    sub     r10, r9
    mov     r11, r10
    call    #__float_shift_right
    pop     r9
    tst     r9
    jn      addf_opposite
    add     r14, r12
    addc    r15, r13
    jnc     addf_pack
    rrc     r13
    rrc     r12
    jnc     addf_carried
    bis     #1, r12
addf_carried:
    inc     r10
addf_pack:
    br      #__float_pack

addf_opposite:
    sub     r12, r14
    subc    r13, r15
    jc      addf_positive
    xor     #0x8000, r8
    inv     r14
    inv     r15
    inc     r14
    adc     r15
addf_positive:
    mov     r14, r12
    mov     r15, r13
    bis     r14, r15
    tst     r15
    jnz     addf_pack
    ; An exact difference of nothing is +0.
    clr     r8
    jmp     addf_pack

addf_infinite:
    cmp     r11, r10
    jeq     addf_infinities
    ; With only one infinity, its exponent is the larger one.
    jge     addf_infinity
    mov     r9, r8
    jmp     addf_infinity
addf_infinities:
    xor     r8, r9
    jn      addf_nan
addf_infinity:
    br      #__float_infinity
addf_nan:
    br      #__float_nan
