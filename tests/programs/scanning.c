// sscanf in many forms.
#include <inttypes.h>
#include <stdio.h>

int main(void) {
  int a = 0, b = 0, n = -1;
  int32_t wide = 0;
  int64_t wider = 0;
  unsigned hex = 0;
  short small = 0;
  float single = 0;
  double real = 0;
  char word[20] = "", rest[20] = "", c = '?';
  printf("%d ", sscanf("12 -34", "%d%d", &a, &b));
  printf("%d %d\n", a, b);
  printf("%d ", sscanf("7,8;9", "%d,%d", &a, &b));
  printf("%d %d\n", a, b);
  printf("%d ", sscanf("0x1f", "%i", &a));
  printf("%d\n", a);
  printf("%d ", sscanf("beef 17", "%x %o", &hex, (unsigned *)&b));
  printf("%x %o\n", hex, (unsigned)b);
  printf("%d ", sscanf("-2000000000 -9000000000000000000 123",
                       "%" SCNd32 " %" SCNd64 " %hd", &wide, &wider, &small));
  printf("%" PRId32 " %" PRId64 " %d\n", wide, wider, small);
  printf("%d ", sscanf("  hello   world", "%s %s", word, rest));
  printf("%s %s\n", word, rest);
  printf("%d ", sscanf("x 123abc", "%c %*d%s", &c, word));
  printf("%c %s\n", c, word);
  printf("%d ", sscanf("key=value pairs", "%[^=]=%[a-z]", word, rest));
  printf("%s %s\n", word, rest);
  printf("%d ", sscanf("3.25 -1.5e-3", "%f %lf", &single, &real));
  printf("%g %g\n", (double)single, real);
  printf("%d ", sscanf("12345", "%2d%d", &a, &b));
  printf("%d %d\n", a, b);
  printf("%d ", sscanf("55 items", "%d items%n", &a, &n));
  printf("%d\n", n);
  printf("%d\n", sscanf("", "%d", &a));
  printf("%d\n", sscanf("none", "%d", &a));
  printf("%d ", sscanf("50%", "%d%%", &a));
  printf("%d\n", a);
  return 0;
}
