; double __mspabi_cvtfd(float): the float in R12:R13 as a double in R12..R15. Exact.
    .text
    .global __mspabi_cvtfd
__mspabi_cvtfd:
    mov     r13, r11
    and     #0x7f80, r11
    jz      cvtfd_small
    cmp     #0x7f80, r11
    jeq     cvtfd_special
    ; The exponent's bias grows by 896, and the field moves three places to the right.
    push    r13
    bic     #0x8000, r13
    call    #cvtfd_move
    add     #0x3800, r15
cvtfd_sign:
    pop     r11
    and     #0x8000, r11
    bis     r11, r15
    ret
cvtfd_special:
    push    r13
    call    #cvtfd_move
    bis     #0x7ff0, r15
    jmp     cvtfd_sign

; R12:R13 shifted right by three into R12..R15, the sign left out.
cvtfd_move:
    mov     r13, r15
    bic     #0x8000, r15
    mov     r12, r14
    clr     r13
    call    #cvtfd_halve
    call    #cvtfd_halve
    call    #cvtfd_halve
    clr     r12
    ret
cvtfd_halve:
    clrc
    rrc     r15
    rrc     r14
    rrc     r13
    ret

cvtfd_small:
    ; Zero or subnormal: the leading one has to be found.
    push    r13
    mov     r13, r15
    and     #0x007f, r15
    mov     r12, r14
    clr     r13
    clr     r12
    mov     r15, r11
    bis     r14, r11
    tst     r11
    jz      cvtfd_sign
    mov     #0x3810, r11
cvtfd_normalise:
    bit     #0x0080, r15
    jnz     cvtfd_found
    rla     r14
    rlc     r15
    sub     #0x10, r11
    jmp     cvtfd_normalise
cvtfd_found:
    bic     #0x0080, r15
    call    #cvtfd_halve
    call    #cvtfd_halve
    call    #cvtfd_halve
    add     r11, r15
    jmp     cvtfd_sign
