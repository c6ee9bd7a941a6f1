\ Conway's game of life on a torus: a glider and a blinker.

here 0 , here swap - constant /cell
: cells /cell * ;

12 constant width
10 constant height
width height * constant area
create world area cells allot
create next-world area cells allot

: wrapped ( n limit -- n ) dup rot + swap mod ;
: at ( x y -- offset ) height wrapped width * swap width wrapped + cells ;
: alive ( x y -- n ) at world + @ ;
: clear ( addr -- ) area 0 do 0 over i cells + ! loop drop ;
: born ( x y -- ) 1 -rot at world + ! ;

: neighbours ( x y -- n )
  0 -rot
  2 -1 do
    2 -1 do
      i 0<> j 0<> or if
        2dup j + swap i + swap alive
        -rot 2>r + 2r>
      then
    loop
  loop 2drop ;

: rule ( alive neighbours -- alive ) dup 3 = if 2drop 1 else 2 = and negate 1 and then ;

: generation
  height 0 do
    width 0 do
      i j alive negate i j neighbours rule
      i j at next-world + !
    loop
  loop
  next-world world area cells move ;

: show
  height 0 do
    width 0 do i j alive if [char] # else [char] . then emit loop cr
  loop ;

: population ( -- n ) 0 area 0 do i cells world + @ + loop ;

world clear
1 0 born 2 1 born 0 2 born 1 2 born 2 2 born
8 5 born 8 6 born 8 7 born

: run ( n -- )
  0 do i 8 mod 0= if ." generation " i . ." population " population . cr show then generation loop ;
25 run
