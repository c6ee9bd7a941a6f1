wordlist constant private
: hidden 1 ;
get-current private set-current : hidden 2 ; set-current
hidden . cr
: with-private get-order private swap 1+ set-order ; with-private hidden . previous hidden . cr
vocabulary tools also tools definitions : wrench ." wrench" ; previous definitions
[defined] wrench . also tools wrench previous cr
s" dup" forth-wordlist search-wordlist . drop
s" if" forth-wordlist search-wordlist . drop
s" nowhere" forth-wordlist search-wordlist . cr
get-order set-order hidden . cr
32 word dup find nip . 32 word if find nip . 32 word nowhere find nip . cr
