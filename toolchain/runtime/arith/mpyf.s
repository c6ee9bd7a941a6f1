; float __mspabi_mpyf(float, float): R12:R13 = R12:R13 * R14:R15. Clobbers R11, R14, R15.
    .text
    .global __mspabi_mpyf
__mspabi_mpyf:
    call    #__float_enter
    xor     r9, r8
    call    #__float_screen
    jc      mpyf_infinite
    add     r11, r10
    sub     #126, r10
    ; The product gathers in R9:R11, the multiplier passes through R14: of its low word only
    ; the upper byte can be set. Lost product bits replace the multiplier's as those leave.
    push    r8
    clr     r9
    clr     r11
    swpb    r14
    mov.b   r14, r14
    mov     #8, r8
    call    #mpyf_bits
    push    r14
    mov     r15, r14
    mov     #16, r8
    call    #mpyf_bits
    bis     @r1+, r14
    mov     r9, r12
    mov     r11, r13
    pop     r8
    tst     r14
    jz      mpyf_pack
    bis     #1, r12
mpyf_pack:
    br      #__float_pack

mpyf_bits:
    bit     #1, r14
    jnc     mpyf_even
    add     r12, r9
    addc    r13, r11
mpyf_even:
    rrc     r11
    rrc     r9
    rrc     r14
    dec     r8
    jnz     mpyf_bits
    ret

mpyf_infinite:
    ; The other operand is zero if its exponent says so.
    cmp     #-512, r10
    jeq     mpyf_nan
    cmp     #-512, r11
    jeq     mpyf_nan
    br      #__float_infinity
mpyf_nan:
    br      #__float_nan
