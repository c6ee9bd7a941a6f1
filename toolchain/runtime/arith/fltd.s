; Conversions of integers to double, result in R12..R15: long in R12:R13, long long in
; R12..R15, signed and unsigned. Clobbers R11.
    .text
    .global __mspabi_fltlid
    .global __mspabi_fltuld
    .global __mspabi_fltllid
    .global __mspabi_fltulld
__mspabi_fltlid:
    mov     r13, r15
    rla     r15
    subc    r15, r15
    inv     r15
    mov     r15, r14
    jmp     __mspabi_fltllid
__mspabi_fltuld:
    clr     r14
    clr     r15
__mspabi_fltulld:
    clr     r11
    jmp     fltd_enter
__mspabi_fltllid:
    mov     r15, r11
    tst     r11
    jge     fltd_enter
    inv     r12
    inv     r13
    inv     r14
    inv     r15
    inc     r12
    adc     r13
    adc     r14
    adc     r15
fltd_enter:
    push    r10
    push    r9
    push    r8
    push    r7
    push    r6
    push    r5
    push    r4
    mov     r11, r5
    mov     #1086, r7
    br      #__double_pack
