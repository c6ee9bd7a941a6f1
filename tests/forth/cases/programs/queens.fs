\ Eight queens by backtracking: all solutions of boards of 4 to 8, and the first one drawn.

here 0 , here swap - constant /cell
: cells /cell * ;
: array ( n "name" -- ) create 0 do 0 , loop does> ( i -- addr ) swap cells + ;

8 constant most
most array column          \ the column of the queen in each row
most array taken           \ columns in use
most 2* array rising       \ diagonals in use
most 2* array falling

variable size
variable solutions
variable shown

: diagonals ( row col -- addr addr ) 2dup + rising -rot - most + 1- falling ;
: free? ( row col -- flag )
  dup taken @ if 2drop false exit then
  diagonals @ swap @ or 0= ;
: mark ( n row col -- ) 2 pick over taken !  diagonals 2 pick swap ! ! ;
: place ( row col -- ) 2dup swap column !  1 -rot mark ;
: remove ( row col -- ) 0 -rot mark ;

: draw
  size @ 0 do
    size @ 0 do j column @ i = if ." Q " else ." . " then loop cr
  loop ;
: found
  1 solutions +!
  shown @ 0= if draw true shown ! then ;

: try ( row -- )
  dup size @ = if drop found exit then
  size @ 0 do
    dup i free? if
      dup i place
      dup 1+ recurse
      dup i remove
    then
  loop drop ;

: queens ( n -- )
  size ! 0 solutions ! false shown !
  0 try
  size @ . ." queens: " solutions @ . cr ;

: all 9 4 do i queens loop ;
all
