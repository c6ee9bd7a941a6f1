1 ( comment ) . ( open
2 . \ the rest is not . . .
( a ) ( b ) 3 .
.( now ) 4 .
: x ( inside ) 5 \ and here
  . ; x
.( unfinished
." unfinished too
s" unfinished three
.
