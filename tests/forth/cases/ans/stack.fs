\ Moving cells between and within the stacks.
1 2 3 .s dup .s drop swap .s over .s rot .s -rot .s cr
nip .s tuck .s 2drop .s drop drop cr
1 2 3 4 2dup .s 2over .s 2swap .s cr
2drop 2drop 2drop 2drop .s cr
0 ?dup .s drop 7 ?dup .s 2drop cr
10 20 30 40 2 pick . 3 roll . depth . .s cr
2drop drop
0 1 2 3 0 roll .s 1 roll .s 2 roll .s 2drop 2drop cr
: keep 1 >r 2 3 2>r 2r@ . . 2r> . . r@ . r> . ; keep cr
: nested 5 >r 6 >r r@ . r> . r> . ; nested cr
