// Variable arguments of every size, passed on and walked twice.
#include <inttypes.h>
#include <stdarg.h>
#include <stdio.h>

static int64_t sum(const char *kinds, ...) {
  int64_t total = 0;
  va_list arguments;
  va_start(arguments, kinds);
  for (; *kinds; kinds++) {
    switch (*kinds) {
      case 'i': total += va_arg(arguments, int); break;
      case 'l': total += va_arg(arguments, int32_t); break;
      case 'q': total += va_arg(arguments, int64_t); break;
      case 'd': total += (int64_t)va_arg(arguments, double); break;
      case 's': for (const char *s = va_arg(arguments, const char *); *s; s++) total++; break;
    }
  }
  va_end(arguments);
  return total;
}

static void twice(const char *format, ...) {
  va_list arguments, again;
  va_start(arguments, format);
  va_copy(again, arguments);
  vprintf(format, arguments);
  vprintf(format, again);
  va_end(again);
  va_end(arguments);
}

static int length(char *buffer, size_t size, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int count = vsnprintf(buffer, size, format, arguments);
  va_end(arguments);
  return count;
}

int main(void) {
  printf("%" PRId64 "\n", sum("iii", 1, -2, 30000));
  printf("%" PRId64 "\n", sum("ilqdsi", 1, (int32_t)100000, (int64_t)1 << 40, 2.75, "four", -1));
  twice("%d %s %" PRId64 " %.2f %c\n", 42, "text", (int64_t)-5000000000, 3.14159, 'z');
  char buffer[8];
  printf("%d ", length(buffer, sizeof buffer, "%d-%s", 12345, "abcdef"));
  printf("<%s>\n", buffer);
  printf("%d\n", length(NULL, 0, "%0100d", 7));
  return 0;
}
