/* The sieve of Eratosthenes over odd numbers, a bit for each. */

#include <stdint.h>
#include <stdio.h>

#define LIMIT 8000
static uint8_t composite[LIMIT / 16 + 1];

static int is_composite(unsigned n) { return composite[n / 16] >> (n / 2 % 8) & 1; }
static void strike(unsigned n) { composite[n / 16] |= (uint8_t)(1 << (n / 2 % 8)); }

int main(void)
{
    unsigned count = 1, last = 2;
    for (unsigned n = 3; n < LIMIT; n += 2) {
        if (is_composite(n))
            continue;
        ++count;
        last = n;
        for (unsigned long multiple = (unsigned long)n * n; multiple < LIMIT; multiple += 2 * n)
            strike((unsigned)multiple);
    }
    printf("%u primes below %u, the last one is %u\n", count, LIMIT, last);
    return 0;
}
