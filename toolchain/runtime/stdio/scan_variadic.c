#include <stdio.h>

int scanf(const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int items = vfscanf(stdin, format, arguments);
  va_end(arguments);
  return items;
}

int fscanf(FILE *stream, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int items = vfscanf(stream, format, arguments);
  va_end(arguments);
  return items;
}

int vscanf(const char *format, va_list arguments) {
  return vfscanf(stdin, format, arguments);
}
