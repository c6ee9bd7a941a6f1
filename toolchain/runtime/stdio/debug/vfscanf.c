#include "../stream.h"

#include "../../debugio/debug_io.h"

enum { NO_LINE_YET = -1 };

int vfscanf(FILE *stream, const char *format, va_list arguments) {
  fflush(NULL);
  if (stream->handle == 0) {
    const unsigned block[] = {DEBUG_WORD(format), DEBUG_WORD(arguments)};
    return __debug_io_wait(DEBUG_VSCANF, block, NO_LINE_YET);
  }
  if (stream->flags & STREAM_PUSHED) {
    stream->flags &= (unsigned char)~STREAM_PUSHED;
    DEBUG_CALL(DEBUG_UNGETC, stream->pushed, DEBUG_WORD(stream->handle));
  }
  return DEBUG_CALL(DEBUG_VFSCANF, DEBUG_WORD(stream->handle), DEBUG_WORD(format),
                    DEBUG_WORD(arguments));
}
