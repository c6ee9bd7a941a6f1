source-id .
refill .
query
1 . save-input 2 . 2drop 2drop drop
variable turns : again? turns @ 1 < if 1 turns +! restore-input . then ;
save-input turns @ . again?
3 restore-input
s" a" restore-input
save-input
restore-input .
.s
