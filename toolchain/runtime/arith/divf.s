; float __mspabi_divf(float, float): R12:R13 = R12:R13 / R14:R15. Clobbers R11, R14, R15.
    .text
    .global __mspabi_divf
__mspabi_divf:
    call    #__float_enter
    call    #__float_swap
    xor     r9, r8
    call    #__float_screen
    jc      divf_infinite
    cmp     #-512, r11
    jeq     divf_by_zero
    cmp     #-512, r10
    jeq     divf_zero
    sub     r11, r10
    add     #127, r10
    mov     #1, r9
    call    #divf_try
    mov     r9, r11
    mov     #1, r9
    call    #divf_bit
    bis     r13, r12
    tst     r12
    jz      divf_exact
    bis     #1, r9
divf_exact:
    mov     r9, r12
    mov     r11, r13
    br      #__float_pack

; Sixteen steps of restoring division of R12:R13 by R14:R15; the quotient grows in R9 behind
; a marker bit whose arrival in the carry ends the steps.
divf_bit:
    rla     r12
    rlc     r13
    jc      divf_take
divf_try:
    sub     r14, r12
    subc    r15, r13
    jc      divf_shift
    add     r14, r12
    addc    r15, r13
    clrc
    jmp     divf_shift
divf_take:
    sub     r14, r12
    subc    r15, r13
    setc
divf_shift:
    rlc     r9
    jnc     divf_bit
    ret

divf_infinite:
    cmp     r11, r10
    jeq     divf_nan
    jge     divf_infinity
divf_zero:
    br      #__float_zero
divf_by_zero:
    cmp     r11, r10
    jeq     divf_nan
divf_infinity:
    br      #__float_infinity
divf_nan:
    br      #__float_nan
