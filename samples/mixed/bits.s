; Operations on bits. The first argument and the result are in R12; a function keeps R4 to R10.

        .text

        .global reverse_bits
reverse_bits:
        mov     #16, r14
        clr     r13
1:      rra     r12             ; the lowest bit to the carry
        rlc     r13             ; and from there to the other end
        dec     r14
        jnz     1b
        mov     r13, r12
        ret

        .global for_each_bit
for_each_bit:
        push    r10
        push    r9
        mov     r12, r10        ; the bits that are left
        clr     r9              ; the number of the lowest of them
1:      tst     r10
        jz      3f
        bit     #1, r10
        jz      2f
        mov     r9, r12
        call    #visit
2:      clrc
        rrc     r10
        inc     r9
        jmp     1b
3:      pop     r9
        pop     r10
        ret
