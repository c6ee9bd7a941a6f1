drop
1 2 + +
.s
: fill-up 1000 0 do i loop ; fill-up
drop depth .
: clear begin drop again ; clear
: deep 1000 0 do i >r loop ; deep
: endless recurse ; endless
r>
1 >r
r@ . r> .
: takes r> drop ; : gives 1 >r takes r> . ; gives
: leaves-some 1 >r ; leaves-some
: takes-two 2r> ; takes-two
: peeks 2r@ ; 1 >r peeks
r> .
512 pick
-1 pick
1 2 5 roll
-1 roll
.s 2drop
s" a" pick
: loops-in-itself 1 0 do recurse loop ; loops-in-itself
: catches ['] catches-none catch ;
: catch-again ['] dup catch drop recurse ;
1 ' drop execute .s
5 execute
s" a" execute
5 catch
here catch
