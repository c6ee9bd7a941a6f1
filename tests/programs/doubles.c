// Double precision: arithmetic, conversions, accumulations, printing.
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>

static double power(double base, int exponent) {
  double result = 1;
  for (; exponent > 0; exponent--)
    result *= base;
  return result;
}

static double root(double value) {
  double guess = value / 2;
  for (int i = 0; i < 40; i++)
    guess = (guess + value / guess) / 2;
  return guess;
}

int main(void) {
  static const double values[] = {0, 1, -2.5, 3.141592653589793, 1e100, 1e-100, 9007199254740992};
  for (int i = 0; i < 7; i++)
    for (int j = 0; j < 7; j++) {
      const volatile double a = values[i], b = values[j];
      printf("%.17g %.17g %.17g", a + b, a - b, a * b);
      if (b != 0)
        printf(" %.17g", a / b);
      printf(" %d%d%d\n", a < b, a == b, a >= b);
    }
  printf("%.15g %.15g\n", power(1.0001, 10000), root(2));
  double sum = 0;
  for (int i = 1; i <= 300; i++)
    sum += (i % 2 ? 4.0 : -4.0) / (2 * i - 1);
  printf("%.12f\n", sum);
  for (volatile double d = 0.7; d < 1e18; d *= -97.3, d = d < 0 ? -d : d)
    printf("%" PRId64 " %" PRIu64 " %g\n", (int64_t)-d, (uint64_t)d, (double)(float)d);
  volatile int64_t large = 9223372036854775807;
  printf("%.0f %.0f\n", (double)large, (double)(uint64_t)large * 2);
  static const char *const texts[] = {"1", "0.1", "-2.5e3", "1e308", "1e-320", "  7x", "nan", "inf"};
  for (int i = 0; i < 8; i++) {
    char *end;
    const double value = strtod(texts[i], &end);
    printf("%.17g <%s>\n", value, end);
  }
  return 0;
}
