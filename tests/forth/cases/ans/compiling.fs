: seven [ 3 4 + ] literal ; seven . cr
: star [char] * emit ; star char A emit cr
: my-if postpone if ; immediate
: test my-if ." yes" else ." no" then ; 1 test 0 test cr
: add-later postpone + ; immediate : sum 1 2 add-later ; sum . cr
: now ." now " ; immediate : quiet now ; quiet cr
: calls [compile] now ; calls cr
: compile-dup ['] dup compile, ; immediate : square compile-dup * ; 6 square . cr
: in-state state @ 0<> . ; immediate in-state : s in-state ; cr
: squared postpone dup postpone * ; immediate : cube dup squared * ; 3 cube . cr
: twice dup 2>r 2r> ; 4 twice . . cr
1 [if] ." taken" [else] ." not" [then] cr
0 [if] ." not" [if] ." deeper" [else] ." deep" [then] [else] ." taken" [then] cr
0 [if]
  ." lines" 1 [if] ." a" [then]
[else]
  ." other" 0 [if] ." b" [else] ." c" [then]
[then] cr
[defined] dup . [undefined] dup . [defined] nowhere . [undefined] nowhere . cr
.( printed at once) cr
( a comment
  over two lines ) 1 . cr
: loopy 3 0 do [ 2 ] literal i * . loop ; loopy cr
