; int __unorddf2(double, double): R12 = 1 if R12..R15 or the double at 2(R1) is a NaN, else 0.
    .text
    .global __unorddf2
__unorddf2:
    call    #unordd_test
    jc      unordd_yes
    mov     2(r1), r12
    mov     4(r1), r13
    mov     6(r1), r14
    mov     8(r1), r15
    call    #unordd_test
unordd_yes:
    clr     r12
    rlc     r12
    ret

; Carry tells that R12..R15 is a NaN.
unordd_test:
    bis     r13, r12
    bis     r14, r12
    rla     r15
    tst     r12
    jz      unordd_whole
    bis     #1, r15
unordd_whole:
    cmp     #0xffe1, r15
    ret
