; int __mspabi_cmpd(double, double): R12 = -1, 0, 1 as R8..R11 is less than, equal to or
; greater than R12..R15; 1 if either is a NaN. Preserves R8 to R10, clobbers R11.
    .text
    .global __mspabi_cmpd
__mspabi_cmpd:
    push    r7
    push    r6
    push    r5
    mov     r11, r6
    mov     r15, r7
    bic     #0x8000, r11
    bic     #0x8000, r15
    cmp     #0x7ff0, r11
    jlo     cmpd_second
    jne     cmpd_greater
    mov     r8, r5
    bis     r9, r5
    bis     r10, r5
    tst     r5
    jnz     cmpd_greater
cmpd_second:
    cmp     #0x7ff0, r15
    jlo     cmpd_numbers
    jne     cmpd_greater
    mov     r12, r5
    bis     r13, r5
    bis     r14, r5
    tst     r5
    jnz     cmpd_greater
cmpd_numbers:
    ; The sign of the larger magnitude decides, whatever the other sign is.
    cmp     r15, r11
    jne     cmpd_unequal
    cmp     r14, r10
    jne     cmpd_unequal
    cmp     r13, r9
    jne     cmpd_unequal
    cmp     r12, r8
    jne     cmpd_unequal
    xor     r6, r7
    jn      cmpd_opposite
cmpd_equal:
    clr     r12
    jmp     cmpd_done
cmpd_opposite:
    bis     r14, r15
    bis     r13, r15
    bis     r12, r15
    tst     r15
    jz      cmpd_equal
    jmp     cmpd_first
cmpd_unequal:
    jc      cmpd_first
    mov     r7, r6
    inv     r6
cmpd_first:
    tst     r6
    mov     #-1, r12
    jn      cmpd_done
cmpd_greater:
    mov     #1, r12
cmpd_done:
    pop     r5
    pop     r6
    pop     r7
    ret
