#include "debugio.h"

#include "debug_io.h"

enum { NO_CHARACTER_YET = -2, NO_LINE_YET = -1 };

int debug_vprintf(const char *format, va_list arguments) {
  return DEBUG_CALL(DEBUG_VPRINTF, DEBUG_WORD(format), DEBUG_WORD(arguments));
}

int debug_printf(const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int count = debug_vprintf(format, arguments);
  va_end(arguments);
  return count;
}

int debug_putchar(int character) {
  return DEBUG_CALL(DEBUG_PUTCHAR, DEBUG_WORD(character));
}

int debug_puts(const char *text) {
  return DEBUG_CALL(DEBUG_PUTS, DEBUG_WORD(text));
}

int debug_vscanf(const char *format, va_list arguments) {
  const unsigned block[] = {DEBUG_WORD(format), DEBUG_WORD(arguments)};
  return __debug_io_wait(DEBUG_VSCANF, block, NO_LINE_YET);
}

int debug_scanf(const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int items = debug_vscanf(format, arguments);
  va_end(arguments);
  return items;
}

int debug_getchar(void) {
  return __debug_io_wait(DEBUG_GETCHAR, 0, NO_CHARACTER_YET);
}

char *debug_gets(char *buffer, size_t size) {
  const unsigned block[] = {DEBUG_WORD(buffer), size};
  __debug_io_wait(DEBUG_GETS, block, NO_LINE_YET);
  return buffer;
}

int debug_getch(void) {
  return __debug_io_wait(DEBUG_GET_KEY, 0, NO_LINE_YET);
}

int debug_kbhit(void) {
  return __debug_io(DEBUG_KEY_AVAILABLE, 0);
}

#define DEFINE_NUMBER_INPUT(name, type, operation)              \
  void name(type *value) {                                      \
    const unsigned block[] = {DEBUG_WORD(value)};               \
    __debug_io_wait(operation, block, NO_LINE_YET);             \
  }

DEFINE_NUMBER_INPUT(debug_getint, int, DEBUG_GET_INT)
DEFINE_NUMBER_INPUT(debug_getuint, unsigned, DEBUG_GET_UNSIGNED)
DEFINE_NUMBER_INPUT(debug_getlong, long, DEBUG_GET_LONG)
DEFINE_NUMBER_INPUT(debug_getulong, unsigned long, DEBUG_GET_UNSIGNED_LONG)
DEFINE_NUMBER_INPUT(debug_getllong, long long, DEBUG_GET_LONG_LONG)
DEFINE_NUMBER_INPUT(debug_getullong, unsigned long long, DEBUG_GET_UNSIGNED_LONG_LONG)
DEFINE_NUMBER_INPUT(debug_getfloat, float, DEBUG_GET_FLOAT)
DEFINE_NUMBER_INPUT(debug_getdouble, double, DEBUG_GET_DOUBLE)
