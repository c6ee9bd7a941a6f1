; int __mspabi_cmpf(float, float): R12 = -1, 0, 1 as R12:R13 is less than, equal to or greater
; than R14:R15; 1 if either is a NaN. Clobbers R11, R13 to R15.
    .text
    .global __mspabi_cmpf
__mspabi_cmpf:
    push    r10
    mov     r13, r10
    mov     r15, r11
    bic     #0x8000, r13
    bic     #0x8000, r15
    cmp     #0x7f80, r13
    jlo     cmpf_second
    jne     cmpf_greater
    tst     r12
    jnz     cmpf_greater
cmpf_second:
    cmp     #0x7f80, r15
    jlo     cmpf_numbers
    jne     cmpf_greater
    tst     r14
    jnz     cmpf_greater
cmpf_numbers:
    ; The sign of the larger magnitude decides, whatever the other sign is.
    cmp     r15, r13
    jne     cmpf_unequal
    cmp     r14, r12
    jne     cmpf_unequal
    xor     r10, r11
    jn      cmpf_opposite
cmpf_equal:
    clr     r12
    jmp     cmpf_done
cmpf_opposite:
    bis     r14, r15
    tst     r15
    jz      cmpf_equal
    jmp     cmpf_first
cmpf_unequal:
    jc      cmpf_first
    mov     r11, r10
    inv     r10
cmpf_first:
    tst     r10
    mov     #-1, r12
    jn      cmpf_done
cmpf_greater:
    mov     #1, r12
cmpf_done:
    pop     r10
    ret
