; double __mspabi_mpyd(double, double): R12..R15 = R8..R11 * R12..R15.
; Preserves R8 to R10, clobbers R11.
    .text
    .global __mspabi_mpyd
__mspabi_mpyd:
    call    #__double_enter
    xor     r4, r5
    call    #__double_screen
    jc      mpyd_infinite
    add     r6, r7
    sub     #1022, r7
    push    r5
    push    r7
    ; The product gathers in R12..R15; each word of the multiplier passes through R7, which
    ; takes up the product's low bits as its own leave. R4 collects those.
    push    r15
    push    r14
    push    r13
    mov     r12, r7
    swpb    r7
    mov.b   r7, r7
    rra     r7
    rra     r7
    rra     r7
    clr     r12
    clr     r13
    clr     r14
    clr     r15
    clr     r4
    mov     #4, r5
    mov     #5, r6
mpyd_bit:
    bit     #1, r7
    jnc     mpyd_even
    add     r8, r12
    addc    r9, r13
    addc    r10, r14
    addc    r11, r15
mpyd_even:
    rrc     r15
    rrc     r14
    rrc     r13
    rrc     r12
    rrc     r7
    dec     r6
    jnz     mpyd_bit
    bis     r7, r4
    dec     r5
    jz      mpyd_done
    pop     r7
    mov     #16, r6
    jmp     mpyd_bit
mpyd_done:
    pop     r7
    pop     r5
    tst     r4
    jz      mpyd_pack
    bis     #1, r12
mpyd_pack:
    br      #__double_pack

mpyd_infinite:
    ; The other operand is zero if its exponent says so.
    cmp     #-2048, r7
    jeq     mpyd_nan
    cmp     #-2048, r6
    jeq     mpyd_nan
    br      #__double_infinity
mpyd_nan:
    br      #__double_nan
