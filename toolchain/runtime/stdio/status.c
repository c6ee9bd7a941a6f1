#include "stream.h"

#include "../debugio/debug_io.h"

void clearerr(FILE *stream) {
  stream->flags &= (unsigned char)~(STREAM_END | STREAM_ERROR);
  if (stream->handle != 0)
    DEBUG_CALL(DEBUG_CLEARERR, DEBUG_WORD(stream->handle));
}

int feof(FILE *stream) {
  return (stream->flags & STREAM_END) != 0;
}

int ferror(FILE *stream) {
  return (stream->flags & STREAM_ERROR) != 0;
}

int fileno(FILE *stream) {
  return stream == stdout ? 1 : stream == stderr ? 2 : stream->handle;
}

int setvbuf(FILE *stream, char *buffer, int mode, size_t size) {
  if (mode < _IOFBF || mode > _IONBF || __stream_flush(stream) < 0)
    return -1;
  stream->flags &= (unsigned char)~STREAM_LINES;
  if (mode == _IOLBF)
    stream->flags |= STREAM_LINES;
  if (mode == _IONBF) {
    stream->size = 0;
  } else if (buffer && size != 0) {
    stream->buffer = buffer;
    stream->size = size;
  }
  return 0;
}

void setbuf(FILE *stream, char *buffer) {
  setvbuf(stream, buffer, buffer ? _IOFBF : _IONBF, BUFSIZ);
}
