\ Operators found by number, and their errors.

: plus + ; : minus - ; : times * ; : over-by dup 0= if -101 throw then / ;
: operator ( n -- xt )
  case
    0 of ['] plus endof
    1 of ['] minus endof
    2 of ['] times endof
    3 of ['] over-by endof
    -102 throw
  endcase ;
: apply ( a b n -- c ) operator execute ;
: attempt ( a b n -- ) ['] apply catch dup if ." error " . 2drop drop else drop . then ;

10 3 0 attempt 10 3 1 attempt 10 3 2 attempt 10 3 3 attempt 10 0 3 attempt 10 3 9 attempt cr

\ Numbers spelled out in Roman numerals, with a table made at compile time.
here 0 , here swap - constant /cell
create numerals 1000 , 900 , 500 , 400 , 100 , 90 , 50 , 40 , 10 , 9 , 5 , 4 , 1 ,
: value-of ( i -- n ) /cell * numerals + @ ;
: spell ( i -- )
  case
    0 of ." M" endof 1 of ." CM" endof 2 of ." D" endof 3 of ." CD" endof 4 of ." C" endof
    5 of ." XC" endof 6 of ." L" endof 7 of ." XL" endof 8 of ." X" endof 9 of ." IX" endof
    10 of ." V" endof 11 of ." IV" endof 12 of ." I" endof
  endcase ;
: roman ( n -- ) 13 0 do begin dup i value-of >= while i value-of - i spell repeat loop drop space ;
1987 roman 2026 roman 444 roman 3999 roman cr

\ Ackermann's function and the numbers of Catalan.
: ack ( m n -- r )
  over 0= if nip 1+ exit then
  dup 0= if drop 1- 1 recurse exit then
  over swap 1- recurse swap 1- swap recurse ;
: table 4 0 do 5 0 do j i ack 5 .r loop cr loop ;
table
: catalan ( n -- c ) 1 swap 0 ?do i 2* 1+ 2* i 2 + */ loop ;
: catalans 12 0 do i catalan . loop cr ;
catalans
