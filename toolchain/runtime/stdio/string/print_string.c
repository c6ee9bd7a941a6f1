#include "../../formatters/formatter.h"

#include <stdint.h>
#include <stdio.h>

typedef struct {
  char *next;
  size_t left;
} Target;

static void put(char character, void *context) {
  Target *target = context;
  if (target->left > 1) {
    *target->next++ = character;
    target->left--;
  }
}

int vsnprintf(char *buffer, size_t size, const char *format, va_list arguments) {
  Target target = {buffer, size};
  const int count = __vfprintf_core(put, &target, format, arguments);
  if (size != 0)
    *target.next = 0;
  return count;
}

int vsprintf(char *buffer, const char *format, va_list arguments) {
  return vsnprintf(buffer, SIZE_MAX, format, arguments);
}

int snprintf(char *buffer, size_t size, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int count = vsnprintf(buffer, size, format, arguments);
  va_end(arguments);
  return count;
}

int sprintf(char *buffer, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int count = vsnprintf(buffer, SIZE_MAX, format, arguments);
  va_end(arguments);
  return count;
}
