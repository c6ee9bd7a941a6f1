#include "../../formatters/formatter.h"

#include <stdio.h>

static int get(void *context) {
  const char **text = context;
  return **text ? (unsigned char)*(*text)++ : -1;
}

static void unget(int character, void *context) {
  (void)character;
  (*(const char **)context)--;
}

int vsscanf(const char *text, const char *format, va_list arguments) {
  return __vfscanf_core(get, unget, &text, format, arguments);
}

int sscanf(const char *text, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int items = vsscanf(text, format, arguments);
  va_end(arguments);
  return items;
}
