: temps temps| a b | a . b . 5 to a a . b . ; temps temps
: both locals| x | temps| t | x 2 * to t t . ; 4 both
: by-hand [ s" p" (local) s" q" (local) 0 0 (local) ] p . q . ; 1 2 by-hand
: temp-by-hand [ s" t" (temp) 0 0 (temp) ] t . 3 to t t . ; temp-by-hand
: deep locals| n | n 0> if n 1- recurse then n . ; 3 deep
: thrower locals| a | a throw ; : keeps locals| k | 7 ['] thrower catch . k . ; 9 keeps
: no-names locals| | 1 . ; no-names
: open-end locals| a b
1 to a
: outer locals| a | ['] a execute ; 1 outer
: upto locals| limit | limit 0 do limit i - . loop ; 3 upto
: with-does create , does> @ locals| v | v v * ; 6 with-does six six .
: before-does locals| gone | does> gone ;
s" a" (local)
: many locals| a b c d e f g h i j | a b c d e f g h i j + + + + + + + + + ; 1 2 3 4 5 6 7 8 9 10 many .
: strings-too locals| s | s count . drop ; s" four" strings-too
: escape locals| a | [ ' a ] ;
: without [ compile, ] ; without
