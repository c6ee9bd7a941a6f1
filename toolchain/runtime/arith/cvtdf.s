; float __mspabi_cvtdf(double): R12..R15 rounded to the nearest float in R12:R13.
; Clobbers R11, R14, R15.
    .text
    .global __mspabi_cvtdf
__mspabi_cvtdf:
    push    r10
    push    r9
    push    r8
    mov     r15, r8
    mov     r15, r10
    and     #0x7ff0, r10
    rra     r10
    rra     r10
    rra     r10
    rra     r10
    and     #0x000f, r15
    cmp     #2047, r10
    jeq     cvtdf_special
    ; A double's subnormals are far below the least float and become zero with its sign.
    bis     #0x0010, r15
    sub     #896, r10
    cmp     #-30, r10
    jge     cvtdf_justify
    br      #__float_zero
cvtdf_special:
    bis     r12, r13
    bis     r13, r14
    bis     r14, r15
    tst     r15
    jz      cvtdf_infinity
    br      #__float_nan
cvtdf_infinity:
    br      #__float_infinity
cvtdf_justify:
    mov     #11, r9
cvtdf_bit:
    rla     r12
    rlc     r13
    rlc     r14
    rlc     r15
    dec     r9
    jnz     cvtdf_bit
    bis     r13, r12
    tst     r12
    mov     r14, r12
    mov     r15, r13
    jz      cvtdf_exact
    bis     #1, r12
cvtdf_exact:
    br      #__float_pack
