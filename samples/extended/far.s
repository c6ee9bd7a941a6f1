; Code that stands above 64 KB and uses the instructions of the MSP430X. C code calls the entries
; below 64 KB, which call on with 20-bit addresses.

        .text
        .global far_checksum
far_checksum:
        calla   #checksum
        ret

        .global far_address
far_address:
        calla   #here
        ret

        .section FARCODE, code

; R12 is the address of the bytes, R13 their number; the sum is shifted left before each addition.
checksum:
        pushm.a #2, r10
        mova    r12, r10
        clr     r12
        tst     r13
        jz      2f
1:      rlam.a  #1, r12
        mov.b   @r10+, r9
        adda    r9, r12
        dec     r13
        jnz     1b
2:      popm.a  #2, r10
        reta

; The address of this function in R12 (low word) and R13.
here:
        mova    #here, r12
        mova    r12, r13
        rrum.a  #4, r13
        rrum.a  #4, r13
        rrum.a  #4, r13
        rrum.a  #4, r13
        mov     r12, r12
        reta
