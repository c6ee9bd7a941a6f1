; Conversions of 64-bit integers in R12..R15 to float in R12:R13. Clobbers R11, R14, R15.
    .text
    .global __mspabi_fltllif
    .global __mspabi_fltullf
__mspabi_fltullf:
    clr     r11
    jmp     fltllf_enter
__mspabi_fltllif:
    mov     r15, r11
    tst     r15
    jge     fltllf_enter
    inv     r12
    inv     r13
    inv     r14
    inv     r15
    inc     r12
    adc     r13
    adc     r14
    adc     r15
fltllf_enter:
    push    r10
    push    r9
    push    r8
    mov     r11, r8
    mov     #190, r10
    ; A leading one in the upper half, and the lower half as one sticky bit.
    tst     r15
    jnz     fltllf_bits
    tst     r14
    jnz     fltllf_bits
    mov     r13, r15
    mov     r12, r14
    clr     r13
    clr     r12
    sub     #32, r10
fltllf_bits:
    mov     r12, r9
    bis     r13, r9
    bis     r14, r9
    bis     r15, r9
    tst     r9
    jz      fltllf_pack
    tst     r15
    jn      fltllf_pack
    rla     r12
    rlc     r13
    rlc     r14
    rlc     r15
    dec     r10
    jmp     fltllf_bits
fltllf_pack:
    bis     r13, r12
    mov     r12, r9
    mov     r14, r12
    mov     r15, r13
    tst     r9
    jz      fltllf_exact
    bis     #1, r12
fltllf_exact:
    br      #__float_pack
