1 2 + .
create data 4 allot
data 1 + data - . 1 data + data - . data 3 + 1 - data 2 + = .
data s" x" +
.s
1 s" x" -
1e 2e +
data data +
' dup 1 +
data 2 *
s" a" 1 and
s" a" negate
data 0 /
data 1- data > .
create more 1 allot more data - .
more data = . more data <> .
5 ' dup = . s" a" 1 = . 1e 1 = . ' dup ' dup = .
s" abc" s" abc" = . s" abc" s" ABC" = . s" abc" s" abd" < .
1e 2e < . 2e 1e < . 1.5e 1.5e = .
data data 1 + < . data 1 + data max data 1 + = .
1 s" a" <
data 0 <
data 0<
: truth if ." true " else ." false " then ; s" " truth data truth 0e truth 1e truth ' dup truth 0 truth
s" x" 0= . data 0= . 0e 0= . ' dup 0<> .
data data data 2 + within . data 1 + data data 2 + within . data 2 + data data 2 + within .
.s
