#include "../debugio/debug_io.h"

#include <assert.h>
#include <stdlib.h>
#include <string.h>

enum { LONGEST = 80 };

static char *append(char *end, const char *limit, const char *text) {
  while (*text && end < limit)
    *end++ = *text++;
  return end;
}

static char *append_number(char *end, const char *limit, unsigned number) {
  char digits[6];
  char *digit = digits + sizeof digits;
  *--digit = 0;
  do
    *--digit = (char)('0' + number % 10);
  while ((number /= 10) != 0);
  return append(end, limit, digit);
}

void __assert_func(const char *file, int line, const char *function, const char *expression) {
  char text[LONGEST + 1];
  const char *const limit = text + LONGEST;
  char *end = append(text, limit, file);
  end = append(end, limit, ":");
  end = append_number(end, limit, (unsigned)line);
  end = append(end, limit, ": ");
  if (function) {
    end = append(end, limit, function);
    end = append(end, limit, ": ");
  }
  end = append(end, limit, expression);
  *end = 0;
  __debug_io(DEBUG_RUNTIME_ERROR, text);
  __debug_io(DEBUG_ASSERT_FAILED, NULL);
  abort();
}

void __assert(const char *file, int line, const char *expression) {
  __assert_func(file, line, NULL, expression);
}
