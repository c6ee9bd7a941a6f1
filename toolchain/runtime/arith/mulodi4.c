// 64-bit multiplication with overflow detection, as __builtin_mul_overflow calls it.

#include <limits.h>

long long __mulodi4(long long a, long long b, int *overflow) {
  const long long product = (long long)((unsigned long long)a * (unsigned long long)b);
  // The one quotient that itself overflows is asked for separately.
  *overflow = a != 0 && ((a == -1 && b == LLONG_MIN) || product / a != b);
  return product;
}
