r/o . w/o . r/w . r/o bin . w/o bin .
create buffer 80 allot variable f
: show 0 ?do buffer i + @ emit loop ;
s" none.txt" r/o open-file . .
s" none.txt" delete-file .
s" a/b" w/o create-file . .
s" a.txt" w/o create-file . f !
s" first line" f @ write-line .
s" second" f @ write-file . s"  half" f @ write-line . s" " f @ write-line . s" äöü€😀" f @ write-line . s" end" f @ write-file .
f @ file-position . . .
buffer 5 f @ read-file . .
f @ close-file .
f @ close-file
s" a.txt" r/o open-file . f !
buffer 80 f @ read-line . . dup . show
buffer 4 f @ read-line . . dup . show
buffer 80 f @ read-line . . dup . show
buffer 80 f @ read-line . . dup . show
buffer 80 f @ read-line . . dup . show
buffer 80 f @ read-line . . dup . show
buffer 80 f @ read-line . . .
f @ file-position . . .
6 0 f @ reposition-file . buffer 4 f @ read-file . dup . show
999 0 f @ reposition-file . 0 1 f @ reposition-file . -1 0 f @ reposition-file .
s" x" f @ write-file . 5 0 f @ resize-file .
f @ close-file .
s" a.txt" r/w open-file . f ! 5 0 f @ resize-file . 0 0 f @ reposition-file .
buffer 80 f @ read-file . dup . show
0 0 f @ reposition-file . s" FI" f @ write-file . 0 0 f @ reposition-file . buffer 80 f @ read-file . show f @ close-file .
s" bin" w/o bin create-file . f ! 255 buffer ! 0 buffer 1+ ! buffer 2 f @ write-file . 300 buffer ! buffer 1 f @ write-file . f @ close-file .
s" bin" r/o bin open-file . f ! buffer 9 f @ read-file . . buffer @ . buffer 1+ @ . f @ close-file .
s" bin" r/o open-file . f ! buffer 9 f @ read-file . . buffer @ . f @ close-file .
s" crlf" w/o create-file . f ! s" one" f @ write-file . 13 buffer ! buffer 1 f @ write-line . s" two" f @ write-line . f @ close-file .
s" crlf" r/o open-file . f ! buffer 80 f @ read-line . . . buffer 80 f @ read-line . . . f @ close-file .
buffer 80 99 read-file
2drop buffer 80 f @ read-line
2drop
0 close-file
s" x" r/o 8 or open-file
s" x" 0 open-file
buffer 999999 s" a.txt" r/o open-file drop read-file
s" inc.fs" w/o create-file . f ! s" : twice 2 * ; 21 twice ." f @ write-line . s" source-id 0> ." f @ write-line . f @ close-file .
include inc.fs
s" inc.fs" included
s" inc.fs" r/o open-file . dup f ! include-file
f @ close-file
include missing.fs
s" missing.fs" included
s" bad.fs" w/o create-file . f ! s" 1 2 +" f @ write-line . s" 3 0 /" f @ write-line . f @ close-file .
include bad.fs
.s drop
s" open.fs" w/o create-file . f ! s" : half 1" f @ write-line . f @ close-file .
include open.fs
state @ .
s" self.fs" w/o create-file . f ! s" include self.fs" f @ write-line . f @ close-file .
include self.fs
1 .
s" comment.fs" w/o create-file . f ! s" ( never closed" f @ write-line . f @ close-file .
include comment.fs
s" lines.fs" w/o create-file . f ! s" refill 9 ." f @ write-line . s" . 1 . query 8 ." f @ write-line . s" 2 ." f @ write-line . f @ close-file .
include lines.fs
s" back.fs" w/o create-file . f ! s" variable n" f @ write-line . s" save-input" f @ write-line .
s" 1 n +! n @ ." f @ write-line . s" n @ 2 < [if] restore-input . [then]" f @ write-line . f @ close-file .
include back.fs .
s" a.txt" delete-file . s" a.txt" r/o open-file . .
.s
: try s" bad.fs" included ; ' try catch . depth .
s" missing.fs" ' included catch . drop
