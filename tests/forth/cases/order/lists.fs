order
only order
also also order previous previous
previous
also also also also also also also
also
order
only
0 set-order
9 set-order
-2 set-order
forth-wordlist dup 2 set-order order
-1 set-order order
99 1 set-order
0 set-current
s" a" set-current
s" dup" 77 search-wordlist
s" DUP" forth-wordlist search-wordlist . drop
vocabulary editor also editor order
definitions : insert ." insert" ; order words
insert
previous definitions
insert
also editor insert previous
also editor forth order previous
get-order . . get-current forth-wordlist = .
wordlist set-current : homeless 1 ; order
homeless
definitions
5 find
here find . .
: dup 5 ; dup .
[defined] dup .
