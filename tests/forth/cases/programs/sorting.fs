\ Sorting: insertion, Shell's, heap and quick sort over the same pseudo-random numbers.

here 0 , here swap - constant /cell
: cells /cell * ;
: cell+ /cell + ;

500 constant count-of
create numbers count-of cells allot
: nth ( i -- addr ) cells numbers + ;

variable seed
: random ( -- n ) seed @ 1103515245 * 12345 + 2147483647 and dup seed ! 65536 / ;
: shuffle 4711 seed ! count-of 0 do random i nth ! loop ;
: sorted? ( -- f ) true count-of 1 do i nth @ i 1- nth @ < if drop false leave then loop ;
: checksum ( -- n ) 0 count-of 0 do i nth @ i 1+ * + loop ;
: exchange ( addr addr -- ) 2dup @ swap @ rot ! swap ! ;

: insert ( i -- )
  dup nth @ swap
  begin dup 0> if 2dup 1- nth @ < else false then while
    dup 1- nth @ over nth ! 1-
  repeat nth ! ;
: insertion-sort count-of 1 do i insert loop ;

variable gap
: sift ( i -- )
  begin dup gap @ >= if dup nth @ over gap @ - nth @ < else false then while
    dup nth over gap @ - nth exchange gap @ -
  repeat drop ;
: shell-sort
  count-of begin 2/ dup gap ! dup 0> while count-of gap @ ?do i sift loop repeat drop ;

variable heap-size
: larger-child ( i -- child )
  2* 1+ dup 1+ heap-size @ < if dup nth @ over 1+ nth @ < if 1+ then then ;
: sink ( i -- )
  begin dup 2* 1+ heap-size @ < while
    dup larger-child
    2dup nth @ swap nth @ > 0= if 2drop exit then
    tuck nth swap nth exchange
  repeat drop ;
: heap-sort
  count-of heap-size !
  0 count-of 2/ do i sink -1 +loop
  begin heap-size @ 1 > while
    -1 heap-size +!  0 nth heap-size @ nth exchange  0 sink
  repeat ;

: partition ( low high -- low high left right )
  2dup over - 2/ + nth @ >r
  2dup
  begin
    swap begin dup nth @ r@ < while 1+ repeat
    swap begin r@ over nth @ < while 1- repeat
    2dup > 0= if 2dup nth swap nth exchange swap 1+ swap 1- then
  2dup > until
  r> drop ;
: quick ( low high -- )
  2dup < 0= if 2drop exit then
  partition locals| right left high low |
  low right recurse
  left high recurse ;
: quick-sort 0 count-of 1- quick ;

: try ( xt -- ) shuffle execute sorted? . checksum . cr ;
shuffle sorted? . cr
' insertion-sort try
' shell-sort try
' heap-sort try
' quick-sort try
