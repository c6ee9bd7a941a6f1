; Where the processor starts: stack, watchdog, initial data, then main and exit.
;
; The linker makes __stack_top, and the table from __init_table_start to __init_table_end of
; three words each: destination, address of the contents or 0 to clear, size in bytes.
    .text
    .global __reset
__reset:
    mov     #__stack_top, r1
    mov     #0x5a80, &__watchdog_control
    mov     #__init_table_start, r10
    jmp     reset_next
reset_entry:
    ; By words: every section begins at an even address, as does what follows it.
    mov     @r10+, r12
    mov     @r10+, r13
    mov     @r10+, r14
    inc     r14
    clrc
    rrc     r14
    jz      reset_next
    tst     r13
    jz      reset_clear
reset_copy:
    mov     @r13+, r15
    mov     r15, 0(r12)
    incd    r12
    dec     r14
    jnz     reset_copy
    jmp     reset_next
reset_clear:
    clr     0(r12)
    incd    r12
    dec     r14
    jnz     reset_clear
reset_next:
    cmp     #__init_table_end, r10
    jne     reset_entry
    clr     r12
    clr     r13
    .linkif __args_size
    sub     #__args_size, r1
    mov     r1, r12
    mov     #__args_size, r13
    call    #debug_getargs
    mov     r1, r13
    .endlinkif
    call    #main
    call    #exit

    .section RESET, const
    .word   __reset
