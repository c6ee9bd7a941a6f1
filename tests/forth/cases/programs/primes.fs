\ The sieve of Eratosthenes, twin primes and Goldbach partitions.

here 0 , here swap - constant /cell
: cells /cell * ;

2000 constant limit
create composite limit cells allot
: flag ( n -- addr ) cells composite + ;
: prime? ( n -- f ) dup 2 < if drop false else flag @ 0= then ;

: clear limit 0 do 0 i flag ! loop ;
: strike ( n -- ) dup dup * begin dup limit < while true over flag ! over + repeat 2drop ;
: sieve clear 2 begin dup dup * limit < while dup prime? if dup strike then 1+ repeat drop ;

: how-many ( -- n ) 0 limit 0 do i prime? if 1+ then loop ;
: table ( n -- ) 0 swap 0 do i prime? if i 5 .r 1+ dup 10 mod 0= if cr then then loop drop cr ;
: twins ( n -- ) 3 do i prime? i 2 + prime? and if ." (" i 1 .r ." ," i 2 + 1 .r ." ) " then 2 +loop cr ;
: partitions ( even -- n ) 0 over 2/ 1+ 2 do over i - prime? i prime? and if 1+ then loop nip ;
: goldbach ( n -- ) 4 do i . ." = " i partitions . 2 +loop cr ;

sieve
how-many . cr
200 table
200 twins
41 goldbach
