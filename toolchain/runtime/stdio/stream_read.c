#include "stream.h"

#include "../debugio/debug_io.h"

enum { NOTHING_TYPED_YET = -2 };

int __stream_get(FILE *stream) {
  if (stream->flags & STREAM_PUSHED) {
    stream->flags &= (unsigned char)~STREAM_PUSHED;
    return stream->pushed;
  }
  if (!(stream->flags & STREAM_READ))
    return __stream_failed(stream);
  // A question is on the terminal before its answer is waited for.
  fflush(NULL);
  const unsigned block[] = {DEBUG_WORD(stream->handle)};
  const int character = __debug_io_wait(DEBUG_FGETC, block, NOTHING_TYPED_YET);
  if (character < 0) {
    stream->flags |= STREAM_END;
    return EOF;
  }
  return character;
}
