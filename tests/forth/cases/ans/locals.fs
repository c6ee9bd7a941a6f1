: diff locals| a b | b a - ; 10 3 diff . cr
: swap-it locals| a b | a b ; 1 2 swap-it . . cr
: grow locals| n | n 1+ to n n 2* to n n ; 5 grow . cr
: fib locals| n | n 2 < if n exit then n 1- recurse n 2 - recurse + ; 15 fib . cr
: sum-to locals| n | 0 n 1+ 0 do i + loop ; 100 sum-to . cr
: hides locals| dup | dup dup + ; 4 hides . cr
