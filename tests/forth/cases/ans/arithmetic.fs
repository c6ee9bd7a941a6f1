\ Whole numbers; division rounds down.
1 2 + . 5 7 - . -3 4 * . 0 1- . -1 1+ . cr
7 2 / . -7 2 / . 7 -2 / . -7 -2 / . cr
7 2 mod . -7 2 mod . 7 -2 mod . -7 -2 mod . cr
7 2 /mod . . -7 2 /mod . . 7 -2 /mod . . cr
6 7 3 */ . -7 3 2 */ . -7 3 2 */mod . . cr
9223372036854775807 2 4 */ . cr
9223372036854775807 10 10 */mod . . cr
-9223372036854775808 10 -20 */ . cr
9223372036854775807 1+ . -9223372036854775808 1- . cr
9223372036854775807 2 * . -9223372036854775808 negate . cr
-9223372036854775808 abs . -5 abs . 5 abs . 5 negate . cr
12 10 and . 12 10 or . 12 10 xor . 0 invert . cr
3 2* . -3 2* . 7 2/ . -7 2/ . -1 2/ . cr
1 62 lshift . 1 63 lshift . -1 60 rshift . -1 63 rshift . 8 1 rshift . cr
3 5 max . 3 5 min . -3 -5 max . -3 -5 min . cr
1 -1 max . 1 -1 min . cr
