; long long __mspabi_mpyll(long long, long long): R12..R15 = R8..R11 * R12..R15 by the 16-bit
; multiplier, one word of the result after the other. Preserves R8 to R10, clobbers R11. The
; multiplier's registers: 0 operand, 4 operand of multiply and add, 8 second operand and start,
; 10 and 12 result, 14 its carry.
    .text
    .global __mspabi_mpyll
__mspabi_mpyll:
    push    r7
    push    r6
    push    r5
    push    r4
    push    r2
    dint
    nop
    mov     r8, &__multiplier
    mov     r12, &__multiplier+8
    mov     &__multiplier+10, r4

    mov     &__multiplier+12, &__multiplier+10
    mov     #0, &__multiplier+12
    mov     r8, &__multiplier+4
    mov     r13, &__multiplier+8
    mov     &__multiplier+14, r7
    mov     r9, &__multiplier+4
    mov     r12, &__multiplier+8
    add     &__multiplier+14, r7
    mov     &__multiplier+10, r5

    mov     &__multiplier+12, &__multiplier+10
    mov     r7, &__multiplier+12
    mov     r8, &__multiplier+4
    mov     r14, &__multiplier+8
    mov     r9, &__multiplier+4
    mov     r13, &__multiplier+8
    mov     r10, &__multiplier+4
    mov     r12, &__multiplier+8
    mov     &__multiplier+10, r6

    ; Of the last word nothing is carried on.
    mov     &__multiplier+12, &__multiplier+10
    mov     r8, &__multiplier+4
    mov     r15, &__multiplier+8
    mov     r9, &__multiplier+4
    mov     r14, &__multiplier+8
    mov     r10, &__multiplier+4
    mov     r13, &__multiplier+8
    mov     r11, &__multiplier+4
    mov     r12, &__multiplier+8
    mov     &__multiplier+10, r15
    pop     r2
    mov     r4, r12
    mov     r5, r13
    mov     r6, r14
    pop     r4
    pop     r5
    pop     r6
    pop     r7
    ret
