: fail 5 throw ;
' fail catch . cr
: fine 1 2 ; ' fine catch . . . cr
: deeper 10 20 30 fail ; 7 ' deeper catch . . depth . cr
: zero 0 throw ." on" ; zero cr
: outer ['] fail catch 1+ throw ; ' outer catch . cr
: in-loop 10 0 do i 3 = if i throw then loop ; ' in-loop catch . cr
: after-loop 2 0 do ['] in-loop catch . i . loop ; after-loop cr
: r-kept 8 >r ['] fail catch r> . . ; r-kept cr
: div 0 / ; 1 ' div catch nip . cr
: nothing 1 drop ; ' nothing catch . depth . cr
: aborts abort ; ' aborts catch . cr
: tidy ['] fail catch ?dup if ." caught " . then ; tidy cr
: rethrow ['] fail catch throw ; ' rethrow catch . cr
: local-kept locals| a b | ['] fail catch a . b . . ; 1 2 local-kept cr
