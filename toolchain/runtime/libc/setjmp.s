; int setjmp(jmp_buf R12), void longjmp(jmp_buf R12, int R13). The buffer holds the return
; address, SP and R4 to R10.
    .text
    .global setjmp
    .global longjmp
setjmp:
    mov     @r1, 0(r12)
    mov     r1, 2(r12)
    mov     r4, 4(r12)
    mov     r5, 6(r12)
    mov     r6, 8(r12)
    mov     r7, 10(r12)
    mov     r8, 12(r12)
    mov     r9, 14(r12)
    mov     r10, 16(r12)
    clr     r12
    ret

longjmp:
    mov     @r12+, r14
    mov     @r12+, r1
    mov     @r12+, r4
    mov     @r12+, r5
    mov     @r12+, r6
    mov     @r12+, r7
    mov     @r12+, r8
    mov     @r12+, r9
    mov     @r12+, r10
    ; The caller of setjmp had its return address on the stack; it has been taken off since.
    mov     r14, 0(r1)
    mov     r13, r12
    tst     r12
    jnz     longjmp_return
    inc     r12
longjmp_return:
    ret
