// <math.h>, shown to fewer digits than its functions are right to.
#include <math.h>
#include <stdio.h>

int main(void) {
  for (double x = 0.1; x < 3; x += 0.7) {
    printf("%.12g %.12g %.12g %.12g\n", sin(x), cos(x), tan(x), atan(x));
    printf("%.12g %.12g %.12g %.12g\n", exp(x), log(x), log10(x), sqrt(x));
    printf("%.12g\n", pow(x, 2.5));
  }
  return 0;
}
