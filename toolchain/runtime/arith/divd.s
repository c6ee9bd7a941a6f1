; double __mspabi_divd(double, double): R12..R15 = R8..R11 / R12..R15.
; Preserves R8 to R10, clobbers R11.
    .text
    .global __mspabi_divd
__mspabi_divd:
    call    #__double_enter
    xor     r4, r5
    call    #__double_screen
    jc      divd_infinite
    cmp     #-2048, r6
    jeq     divd_by_zero
    cmp     #-2048, r7
    jeq     divd_zero
    sub     r6, r7
    add     #1023, r7
    push    r7
    ; Restoring division of R12..R15 by R8..R11. A quotient word grows in R7 behind a marker
    ; bit whose arrival in the carry ends the word; the last word has eight bits.
    mov     #4, r6
    mov     #1, r7
    jmp     divd_try
divd_bit:
    rla     r12
    rlc     r13
    rlc     r14
    rlc     r15
    jc      divd_take
divd_try:
    sub     r8, r12
    subc    r9, r13
    subc    r10, r14
    subc    r11, r15
    jc      divd_shift
    add     r8, r12
    addc    r9, r13
    addc    r10, r14
    addc    r11, r15
    clrc
    jmp     divd_shift
divd_take:
    sub     r8, r12
    subc    r9, r13
    subc    r10, r14
    subc    r11, r15
    setc
divd_shift:
    rlc     r7
    jnc     divd_bit
    push    r7
    mov     #1, r7
    dec     r6
    jz      divd_done
    cmp     #1, r6
    jne     divd_bit
    mov     #0x0100, r7
    jmp     divd_bit
divd_done:
    bis     r13, r12
    bis     r14, r12
    bis     r15, r12
    mov     r12, r4
    pop     r12
    swpb    r12
    pop     r13
    pop     r14
    pop     r15
    pop     r7
    tst     r4
    jz      divd_pack
    bis     #1, r12
divd_pack:
    br      #__double_pack

divd_infinite:
    cmp     r6, r7
    jeq     divd_nan
    jge     divd_infinity
divd_zero:
    br      #__double_zero
divd_by_zero:
    cmp     r6, r7
    jeq     divd_nan
divd_infinity:
    br      #__double_infinity
divd_nan:
    br      #__double_nan
