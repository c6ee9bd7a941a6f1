s" hello" . s" hello" count . .
create place 20 allot
s" hello" place 5 move place @ . place 4 + @ .
s" hello" place 6 move
32 word swap . 32 word   spaced .
char , word ,,,a b, . 32 parse next . char ) parse upto) .
32 parse  . \ empty
char " parse to the end
.
s" hel" find . .
s" dup" find . drop s" IF" find . drop
create counted 3 , char d , char u , char p , counted find . drop
counted count . counted 1+ = .
0 0 s" 123abc" >number . . .
0 0 s" 42" >number . . .
0 0 s" abc" >number . . .
1 0 s" 5" >number . . .
char 1 place ! char 2 place 1+ ! char x place 2 + !
0 0 place 3 >number . place 2 + = . . .
0 0 s" 987x" 2 >number . . . .
-1 -1 s" 0" >number . . .
0 0 s" 340282366920938463463374607431768211456" >number . . .
0 0 s" 77 more" convert . . .
0 0 place 1- convert place 2 + = . . .
0 0 counted convert counted 1+ = . . .
0 s" 1" >number
9 char+ . 7 chars . place char+ place - .
s" x" chars
s" abc" 2 included
s" abc" 4 included
s" abc" -1 included
place 999999999 included
place -1 included
-1 word
128512 word
s" a" word
.s
