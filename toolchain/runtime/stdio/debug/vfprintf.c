// Formatting by the host: the program has no formatter in it.

#include "../stream.h"

#include "../../debugio/debug_io.h"

int vfprintf(FILE *stream, const char *format, va_list arguments) {
  if (__stream_flush(stream) < 0)
    return EOF;
  return DEBUG_CALL(DEBUG_VFPRINTF, DEBUG_WORD(stream->handle), DEBUG_WORD(format),
                    DEBUG_WORD(arguments));
}
