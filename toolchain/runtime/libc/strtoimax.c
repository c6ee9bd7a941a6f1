#include <inttypes.h>
#include <stdlib.h>

intmax_t strtoimax(const char *text, char **end, int base) {
  return strtoll(text, end, base);
}

uintmax_t strtoumax(const char *text, char **end, int base) {
  return strtoull(text, end, base);
}
