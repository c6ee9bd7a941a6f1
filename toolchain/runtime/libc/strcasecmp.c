#include <ctype.h>
#include <strings.h>

int strncasecmp(const char *a, const char *b, size_t most) {
  for (; most-- > 0; a++, b++) {
    const int difference = tolower((unsigned char)*a) - tolower((unsigned char)*b);
    if (difference != 0 || !*a)
      return difference;
  }
  return 0;
}

int strcasecmp(const char *a, const char *b) {
  return strncasecmp(a, b, (size_t)-1);
}
