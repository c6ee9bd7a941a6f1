// Text to integers, limits and errors included; division in pairs; absolute values.
#include <errno.h>
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>

int main(void) {
  static const char *const texts[] = {"0", "42", "-42", "  +7 rest", "0x1F", "017", "zz", "",
                                      "9223372036854775807", "9223372036854775808",
                                      "-9223372036854775808", "-9223372036854775809",
                                      "18446744073709551616", "0x", "-0", "1e5"};
  for (int i = 0; i < 16; i++) {
    static const int bases[] = {0, 10, 16, 36};
    for (int j = 0; j < 4; j++) {
      char *end;
      errno = 0;
      const long long value = strtoll(texts[i], &end, bases[j]);
      printf("%lld %d <%s> ", value, errno == ERANGE, end);
      errno = 0;
      const unsigned long long unsigned_value = strtoull(texts[i], &end, bases[j]);
      printf("%llu %d\n", unsigned_value, errno == ERANGE);
    }
  }
  printf("%d %ld %lld\n", atoi("-123"), atol("100000"), atoll("-12345678901"));
  const div_t d = div(-17, 5);
  const lldiv_t e = lldiv(-1000000000000, 7);
  printf("%d %d %lld %lld\n", d.quot, d.rem, e.quot, e.rem);
  printf("%d %ld %lld\n", abs(-5), labs(-70000L), llabs(-5000000000LL));
  return 0;
}
