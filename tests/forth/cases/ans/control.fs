: sign dup 0< if drop ." minus" else 0> if ." plus" else ." nought" then then space ;
-5 sign 5 sign 0 sign cr
: countdown begin dup . 1- dup 0= until drop ; 5 countdown cr
: upto 0 begin 2dup > while dup . 1+ repeat 2drop ; 4 upto 0 upto cr
: forever 0 begin 1+ dup 5 = if exit then dup . again ; forever . cr
: kind case 1 of ." one" endof 2 of ." two" endof dup . ." other" endcase space ;
1 kind 2 kind 3 kind cr
: bare case endcase ; 7 bare depth . cr
: inner case 1 of case 2 of ." 1,2" endof ." 1,?" endcase endof drop ." ?" 0 endcase space ;
2 1 inner 3 1 inner 3 9 inner cr
: while-twice begin dup 10 < while dup 5 <> while dup . 1+ repeat ." five" then drop ;
0 while-twice cr
: fact dup 1 > if dup 1- recurse * then ; 10 fact . 20 fact . cr
: gcd begin dup while tuck mod repeat drop ; 48 36 gcd . 17 5 gcd . cr
: early 1 . exit 2 . ; early cr
