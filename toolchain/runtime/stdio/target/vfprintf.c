// Formatting by the program itself, with the formatter library of its link.

#include "../stream.h"

#include "../../formatters/formatter.h"

enum { CHUNK = 32 };

static void put(char character, void *context) {
  __stream_put(context, character);
}

int vfprintf(FILE *stream, const char *format, va_list arguments) {
  if (stream->size != 0)
    return __vfprintf_core(put, stream, format, arguments);
  // Without a buffer each character would be an operation of the host.
  char chunk[CHUNK];
  const unsigned char listed = stream->flags & STREAM_LISTED;
  stream->flags |= STREAM_LISTED;
  stream->buffer = chunk;
  stream->size = CHUNK;
  const int count = __vfprintf_core(put, stream, format, arguments);
  __stream_flush(stream);
  stream->size = 0;
  stream->flags = (unsigned char)((stream->flags & ~STREAM_LISTED) | listed);
  return ferror(stream) ? EOF : count;
}
