#include <stdint.h>
#include <stdlib.h>

// A linear congruential generator modulo 2^32 (constants: Numerical Recipes, 2nd edition,
// section 7.1); its upper half is what is random enough.
static uint32_t state = 1;

int rand(void) {
  state = state * 1664525 + 1013904223;
  return (int)(state >> 16) & RAND_MAX;
}

void srand(unsigned seed) {
  state = seed;
}
