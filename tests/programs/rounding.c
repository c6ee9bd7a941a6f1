// <math.h> without the large ones: rounding, parts of numbers, inverse and single-precision
// functions.
#include <math.h>
#include <stdio.h>

int main(void) {
  printf("%.6g %.6g %.6g %.6g\n", (double)sinf(1), (double)expf(1), (double)logf(10),
         (double)sqrtf(2));
  printf("%.12g %.12g %.12g\n", asin(0.5), acos(0.5), atan2(-1, -2));
  printf("%g %g %g %g\n", floor(-2.5), ceil(-2.5), fabs(-2.5), fmod(10.5, 3));
  printf("%g %g %g %g\n", round(2.5), trunc(-2.7), rint(3.5), cbrt(27));
  int exponent;
  double whole;
  const double mantissa = frexp(40, &exponent);
  const double fraction = modf(-3.75, &whole);
  printf("%g %d %g %g %g\n", mantissa, exponent, fraction, whole, ldexp(0.75, 5));
  printf("%.10g %.10g\n", hypot(3, 4), erf(0.5));
  printf("%d %d %d\n", isnan(sqrt(-1)) != 0, isinf(exp(1000)) != 0, signbit(-0.0) != 0);
  printf("%g %g %ld\n", fmax(1, 2), fmin(1, 2), lround(-2.5));
  return 0;
}
