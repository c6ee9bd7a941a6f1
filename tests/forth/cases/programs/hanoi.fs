\ Towers of Hanoi: the moves for three discs, and the count and the towers for ten.

here 0 , here swap - constant /cell
: cells /cell * ;

variable moves
variable telling
create height 3 cells allot
: tower ( n -- addr ) cells height + ;
: name ( n -- ) [char] A + emit ;
: move-disc ( from to -- )
  1 moves +!
  -1 2 pick tower +!  1 over tower +!
  telling @ if over name ." ->" dup name space then
  2drop ;

: hanoi ( to from discs -- ) locals| discs from to |
  discs 0= if exit then
  3 from - to - from discs 1- recurse
  from to move-disc
  to 3 from - to - discs 1- recurse ;

: begin-with ( discs -- ) 0 tower ! 0 1 tower ! 0 2 tower ! 0 moves ! ;
: report ." moves " moves @ . ." towers " 3 0 do i tower @ . loop cr ;
: solve ( discs -- ) dup begin-with 2 0 rot hanoi cr report ;

true telling ! 3 solve
false telling ! 10 solve
