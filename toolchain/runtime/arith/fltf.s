; Conversions of integers to float, result in R12:R13: long in R12:R13, long long in R12..R15,
; signed and unsigned. Clobbers R11, R14, R15.
    .text
    .global __mspabi_fltlif
    .global __mspabi_fltulf
__mspabi_fltulf:
    clr     r11
    jmp     fltf_enter
__mspabi_fltlif:
    mov     r13, r11
    tst     r13
    jge     fltf_enter
    inv     r12
    inv     r13
    inc     r12
    adc     r13
fltf_enter:
    push    r10
    push    r9
    push    r8
    mov     r11, r8
    mov     #158, r10
    br      #__float_pack
