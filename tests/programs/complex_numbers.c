// Complex arithmetic and functions.
#include <complex.h>
#include <stdio.h>

static void show(double complex value) {
  printf("%.10g %.10g\n", creal(value), cimag(value));
}

int main(void) {
  const volatile double complex a = 1.5 + 2 * I, b = -0.5 + 3 * I;
  show(a + b);
  show(a * b);
  show(a / b);
  show(conj(a) * a);
  show(csqrt(a));
  printf("%.10g %.10g\n", cabs(b), carg(b));
  const volatile float complex c = 1 + 2 * I;
  const float complex d = c * c / (c + 1);
  printf("%.6g %.6g\n", (double)crealf(d), (double)cimagf(d));
  return 0;
}
