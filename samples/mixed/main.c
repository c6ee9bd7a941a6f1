/* C that calls assembly, which calls back. */

#include "bits.h"

#include <stdio.h>

void visit(unsigned bit)
{
    printf(" %u", bit);
}

int main(void)
{
    const unsigned word = 0x1234;
    printf("0x%04x reversed is 0x%04x; its bits are", word, reverse_bits(word));
    for_each_bit(word);
    printf("\n");
    return 0;
}
