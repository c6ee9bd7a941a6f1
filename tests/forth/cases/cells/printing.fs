create here-data here-data . here-data 2 + . ' dup . s" some text" .
1e . 1.5e . -0.25e0 . 1e20 . 1e-7 . 3.0e2 .
s" text" 1e 7 ' swap here-data .s
depth .
2drop 2drop drop 1e 4 .r s" ab" 5 .r -7 4 .r 123 2 .r
floor
2.7e floor . -2.7e floor . 0e fsin . 0e fcos . 0e ftan .
1 fsin
s" x" fcos
8364 emit 128512 emit
-1 emit
1114112 emit
s" x" emit
s" x" spaces
