#include "stream.h"

#include "../debugio/debug_io.h"

#include <errno.h>

// An offset of the host's operation is one signed word.
enum { LONGEST_STEP = 32767 };

static int step(FILE *stream, int offset, int whence) {
  return DEBUG_CALL(DEBUG_FSEEK, DEBUG_WORD(stream->handle), DEBUG_WORD(offset),
                    DEBUG_WORD(whence));
}

int fseek(FILE *stream, long offset, int whence) {
  if (__stream_flush(stream) < 0)
    return -1;
  if (whence == SEEK_CUR && (stream->flags & STREAM_PUSHED))
    offset--;
  stream->flags &= (unsigned char)~(STREAM_PUSHED | STREAM_END);
  do {
    const int part = offset > LONGEST_STEP    ? LONGEST_STEP
                     : offset < -LONGEST_STEP ? -LONGEST_STEP
                                              : (int)offset;
    if (step(stream, part, whence) != 0) {
      errno = EINVAL;
      return -1;
    }
    offset -= part;
    whence = SEEK_CUR;
  } while (offset != 0);
  return 0;
}

long ftell(FILE *stream) {
  const unsigned position = (unsigned)DEBUG_CALL(DEBUG_FTELL, DEBUG_WORD(stream->handle));
  if (stream->handle == 0 || position == (unsigned)-1) {
    errno = ESPIPE;
    return -1;
  }
  return (long)position + (long)stream->used - ((stream->flags & STREAM_PUSHED) != 0);
}

void rewind(FILE *stream) {
  fseek(stream, 0, SEEK_SET);
  clearerr(stream);
}

int fgetpos(FILE *stream, fpos_t *position) {
  *position = ftell(stream);
  return *position < 0 ? -1 : 0;
}

int fsetpos(FILE *stream, const fpos_t *position) {
  return fseek(stream, *position, SEEK_SET);
}
