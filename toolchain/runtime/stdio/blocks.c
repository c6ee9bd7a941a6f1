#include "stream.h"

#include "../debugio/debug_io.h"

// What has been given back, or comes from the terminal, is read by the character.
static size_t read_slowly(char *target, size_t length, FILE *stream) {
  size_t i = 0;
  while (i < length && (stream->handle == 0 || (stream->flags & STREAM_PUSHED))) {
    const int character = __stream_get(stream);
    if (character < 0)
      break;
    target[i++] = (char)character;
  }
  return i;
}

size_t fread(void *buffer, size_t size, size_t count, FILE *stream) {
  const size_t length = size * count;
  if (length == 0)
    return 0;
  char *target = buffer;
  size_t done = read_slowly(target, length, stream);
  if (stream->handle != 0 && done < length) {
    fflush(NULL);
    const int more = DEBUG_CALL(DEBUG_FREAD, DEBUG_WORD(target + done), 1, length - done,
                                DEBUG_WORD(stream->handle));
    done += more < 0 ? 0 : (size_t)more;
    if (done < length)
      stream->flags |= DEBUG_CALL(DEBUG_FERROR, DEBUG_WORD(stream->handle)) ? STREAM_ERROR
                                                                             : STREAM_END;
  }
  return done / size;
}

size_t fwrite(const void *buffer, size_t size, size_t count, FILE *stream) {
  const size_t length = size * count;
  return length == 0 ? 0 : __stream_write(stream, buffer, length) / size;
}
