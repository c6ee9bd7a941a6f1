#include <stdio.h>

int printf(const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int count = vfprintf(stdout, format, arguments);
  va_end(arguments);
  return count;
}

int fprintf(FILE *stream, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int count = vfprintf(stream, format, arguments);
  va_end(arguments);
  return count;
}

int vprintf(const char *format, va_list arguments) {
  return vfprintf(stdout, format, arguments);
}
