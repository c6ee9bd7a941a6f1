#include "stream.h"

#include "../debugio/debug_io.h"

#include <errno.h>

// Those that have ever held something in a buffer.
static FILE *listed;

int __stream_failed(FILE *stream) {
  stream->flags |= STREAM_ERROR;
  errno = EIO;
  return EOF;
}

static int send(FILE *stream, const char *data, unsigned length) {
  const unsigned sent = (unsigned)DEBUG_CALL(DEBUG_FWRITE, DEBUG_WORD(data), 1, length,
                                             DEBUG_WORD(stream->handle));
  return sent == length ? 0 : __stream_failed(stream);
}

int __stream_flush(FILE *stream) {
  const unsigned used = stream->used;
  if (used == 0)
    return 0;
  stream->used = 0;
  return send(stream, stream->buffer, used);
}

static int flush_listed(void) {
  int result = 0;
  for (FILE *stream = listed; stream; stream = stream->next)
    result |= __stream_flush(stream);
  return result;
}

static void flush_at_exit(void) {
  flush_listed();
}

int fflush(FILE *stream) {
  if (!stream)
    return flush_listed();
  const int result = __stream_flush(stream);
  if (stream->handle != 0)
    DEBUG_CALL(DEBUG_FFLUSH, DEBUG_WORD(stream->handle));
  return result;
}

static void list(FILE *stream) {
  stream->flags |= STREAM_LISTED;
  stream->next = listed;
  listed = stream;
  __exit_streams = flush_at_exit;
}

int __stream_put(FILE *stream, int character) {
  const unsigned char byte = (unsigned char)character;
  if (!(stream->flags & STREAM_WRITE))
    return __stream_failed(stream);
  if (stream->size == 0)
    return send(stream, (const char *)&byte, 1) < 0 ? EOF : byte;
  if (!(stream->flags & STREAM_LISTED))
    list(stream);
  stream->buffer[stream->used++] = (char)byte;
  if (stream->used == stream->size || (byte == '\n' && (stream->flags & STREAM_LINES))) {
    if (__stream_flush(stream) < 0)
      return EOF;
  }
  return byte;
}

unsigned __stream_write(FILE *stream, const char *data, unsigned length) {
  if (stream->size == 0 && (stream->flags & STREAM_WRITE))
    return length == 0 || send(stream, data, length) == 0 ? length : 0;
  for (unsigned i = 0; i < length; i++) {
    if (__stream_put(stream, data[i]) < 0)
      return i;
  }
  return length;
}
