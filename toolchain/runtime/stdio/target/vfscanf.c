#include "../stream.h"

#include "../../formatters/formatter.h"

static int get(void *context) {
  return __stream_get(context);
}

static void unget(int character, void *context) {
  ungetc(character, context);
}

int vfscanf(FILE *stream, const char *format, va_list arguments) {
  return __vfscanf_core(get, unget, stream, format, arguments);
}
