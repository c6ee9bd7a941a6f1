; long long __mspabi_mpyll(long long, long long): R12..R15 = R8..R11 * R12..R15 by the 32-bit
; multiplier: the product of the lower halves, and the mixed products added to its upper half.
; Preserves R8 to R10, clobbers R11. The multiplier's registers: 16 and 18 operand, 32 and 34
; second operand and start, 36 to 42 result.
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
    mov     r8, &__multiplier+16
    mov     r9, &__multiplier+18
    mov     r12, &__multiplier+32
    mov     r13, &__multiplier+34
    call    #mpyll_wait
    mov     &__multiplier+36, r4
    mov     &__multiplier+38, r5
    mov     &__multiplier+40, r6
    mov     &__multiplier+42, r7
    mov     r8, &__multiplier+16
    mov     r9, &__multiplier+18
    mov     r14, &__multiplier+32
    mov     r15, &__multiplier+34
    call    #mpyll_wait
    add     &__multiplier+36, r6
    addc    &__multiplier+38, r7
    mov     r10, &__multiplier+16
    mov     r11, &__multiplier+18
    mov     r12, &__multiplier+32
    mov     r13, &__multiplier+34
    call    #mpyll_wait
    add     &__multiplier+36, r6
    addc    &__multiplier+38, r7
    pop     r2
    mov     r4, r12
    mov     r5, r13
    mov     r6, r14
    mov     r7, r15
    pop     r4
    pop     r5
    pop     r6
    pop     r7
    ret

; The whole result takes eleven cycles (SLAU208, 32-bit hardware multiplier, result
; availability); the call and this are more.
mpyll_wait:
    nop
    nop
    nop
    nop
    ret
