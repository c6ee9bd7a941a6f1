; char *__heap_limit(char *stack): the first address behind the heap. With heap_size defined by
; the link the heap has that many bytes, otherwise it ends 128 bytes below the stack.
    .text
    .global __heap_limit
__heap_limit:
    sub     #128, r12
    .linkif heap_size
    mov     #__heap_start+heap_size, r12
    .endlinkif
    ret
