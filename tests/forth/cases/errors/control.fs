if
then
do
loop
recurse
exit
i
leave
literal
['] dup
[char] a
postpone dup
[compile] dup
does>
locals| a |
;
: a then ;
: a if ;
: a begin if until then ;
: a begin then ;
: a if repeat then ;
: a do then loop ;
: a else ;
: a case endof ;
: a of endof ;
: a 1 of endof endcase ;
: a case of endcase ;
: a if loop ;
: a while ;
: a leave ;
: a if does> then ;
: a does> recurse ;
: a i ; a
: a j ; a
: a 1 0 do j loop ; a
: a 1 s" x" do loop ; a
: a here 1 do loop ; a
: a 1 here do loop ; a
: a here 0 ?do loop ; a
: a ?do loop ; 5 a
: a do loop ; a
: a 5 0 do here +loop ; a
1 .
state @ .
]
1
[
: unfinished 1 2
