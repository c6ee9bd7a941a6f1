65 emit space 66 emit 3 spaces 67 emit cr
0 spaces -5 spaces 42 5 .r 42 1 .r -42 6 .r cr
." text with  blanks" cr
: greet ." hello" ; greet greet cr
1 . -1 . 9223372036854775807 . -9223372036854775808 . cr
