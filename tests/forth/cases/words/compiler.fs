: skip-one [ ahead ] ." skipped" then ." after" ; skip-one
: my-ahead ahead ; immediate : hop my-ahead ." skipped" then ." landed" ; hop
: later postpone nowhere ;
: a-word postpone dup ; a-word
: use-later [ ' dup compile, ] ; 4 use-later + .
ahead
' dup compile,
5 compile,
0 [if] 1 . [else] 2 . [then]
1 [if] 1 . [else] 2 . [then]
0 [if] 1 [if] 5 . [else] 6 . [then] 1 . [then] 3 .
0 [if] 1 .
1 [if] 1 . [else] 2 .
[then] 5 .
s" x" [if] ." true" [then]
[if]
[defined] DUP . [undefined] dup .
[defined]
: x state @ . [ state @ . ] ; x
: st [char] ABC . ; st char ABC .
: str-lit [ s" text" ] literal . ; str-lit
: wrong 1 [compile] nowhere ;
