5 @
s" a" @
1 2 !
variable v
v 1000 + @
v 1 - @
v 1000000000000 + @
1 v -1 + !
9223372036854775807 v + 9223372036854775807 + 9223372036854775807 + @
100000000 allot
9223372036854775807 allot
-9223372036854775808 allot
s" a" allot
-2 allot
-1 allot here v = .
unused 4000000 = .
3999999 allot unused .
2 allot
0 ,
1 ,
-3999990 allot
v v -1 move
v 5 3 move
5 v 3 move
s" abc" v 4 move
v 2@ .s 2drop
v 1- 2@
1 2 v 999999999 + 2!
v count .
s" a" v ! v count
