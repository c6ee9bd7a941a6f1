: up 5 0 do i . loop ; up cr
: down 0 5 do i . -1 +loop ; down cr
: none 0 0 ?do i . loop ." none" ; none cr
: some 3 0 ?do i . loop ; some cr
: pairs 3 0 do 2 0 do j . i . loop loop ; pairs cr
: by-three 10 0 do i . 3 +loop ; by-three cr
: crossing 10 0 do i . 7 +loop ; crossing cr
: to-minus -3 0 do i . -1 +loop ; to-minus cr
: leaving 10 0 do i . i 3 = if leave then loop ." left" ; leaving cr
: both 10 0 do i 2 = if leave then i 7 = if leave then i . loop ; both cr
: wrap -9223372036854775806 9223372036854775806 do i . loop ; wrap cr
: nested-leave 3 0 do 3 0 do i 1 = if leave then j . i . loop loop ; nested-leave cr
: r-inside 3 0 do i >r r@ . r> drop loop ; r-inside cr
: step-by 20 0 do i . dup +loop drop ; 6 step-by cr
: zero-turns 5 5 ?do 1 . leave loop 2 . ; zero-turns cr
