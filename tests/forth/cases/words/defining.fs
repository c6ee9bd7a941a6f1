: X 1 ; : user X ; : X 2 ;
user . x . X .
: SAY ." aB" ; say Say
: two-lines
  1 2
  + ;
two-lines .
: kept 5 ;
: broken nowhere ;
kept .
broken
: lost [ : found 7 ; found .
lost
: closed ; ] dup
state @ .
variable v create c 5 value val 6 constant con
7 to v
7 to con
7 to dup
7 to nowhere
7 to val val .
: set to val ; 8 set val .
' c >body c = . ' v >body v = .
' val >body
' dup >body
5 >body
:
create
variable
1 constant
2 value
'
char
.s
: redo does> drop 9 ; create later redo later .
later .
immediate : imm ." now" ; immediate : uses imm ; uses
:noname 1 + ; 5 swap execute .
:noname [ execute ] ;
: early-xt [ here ] literal ; early-xt here = .
true . false . TRUE .
