here 0 , here swap - constant /cell
42 constant answer answer . cr
variable v 7 v ! v @ . 3 v +! v @ . cr
variable pair /cell allot 1 2 pair 2! pair 2@ . . cr
5 value w w . 6 to w w . : set-w to w ; 9 set-w w . cr
create table 1 , 2 , 3 , table @ . table /cell + @ . cr
: const create , does> @ ; 17 const seventeen seventeen . cr
: counter create 0 , does> dup 1 swap +! @ ; counter ticks ticks . ticks . ticks . cr
counter other other . ticks . cr
: indexed create 0 do dup , 1+ loop drop does> swap /cell * + @ ; 100 3 indexed line
0 line . 2 line . cr
: old 1 ; : user old ; : old 2 ; user . old . cr
:noname 3 * ; 5 swap execute . cr
:noname dup if dup 1- recurse + then ; 4 swap execute . cr
' answer execute . : ex ['] answer execute ; ex . cr
create here-it here-it ' here-it >body = . cr
variable x1 variable x2 x1 x2 = . x1 x1 = . cr
