; int __unordsf2(float, float): R12 = 1 if R12:R13 or R14:R15 is a NaN, else 0.
    .text
    .global __unordsf2
__unordsf2:
    rla     r13
    tst     r12
    jz      unordf_first
    bis     #1, r13
unordf_first:
    rla     r15
    tst     r14
    jz      unordf_second
    bis     #1, r15
unordf_second:
    clr     r12
    cmp     #0xff01, r13
    jhs     unordf_yes
    cmp     #0xff01, r15
    jlo     unordf_no
unordf_yes:
    inc     r12
unordf_no:
    ret
