#include "stream.h"

#include "../debugio/debug_io.h"

#include <errno.h>

static FILE files[FOPEN_MAX - 3];

static unsigned char mode_flags(const char *mode) {
  unsigned char flags = *mode == 'r' ? STREAM_READ : STREAM_WRITE;
  for (; *mode; mode++) {
    if (*mode == '+')
      flags |= STREAM_READ | STREAM_WRITE;
  }
  return flags;
}

static FILE *begin(FILE *stream, int handle, const char *mode) {
  stream->flags = (unsigned char)((stream->flags & STREAM_LISTED) | mode_flags(mode));
  stream->handle = handle;
  stream->size = 0;
  stream->used = 0;
  return stream;
}

FILE *__stream_open(int handle, const char *mode) {
  if (handle < 0) {
    errno = EIO;
    return NULL;
  }
  for (FILE *stream = files; stream < files + FOPEN_MAX - 3; stream++) {
    if (!(stream->flags & (STREAM_READ | STREAM_WRITE)))
      return begin(stream, handle, mode);
  }
  DEBUG_CALL(DEBUG_FCLOSE, DEBUG_WORD(handle));
  errno = EMFILE;
  return NULL;
}

FILE *fopen(const char *name, const char *mode) {
  return __stream_open(DEBUG_CALL(DEBUG_FOPEN, DEBUG_WORD(name), DEBUG_WORD(mode)), mode);
}

FILE *tmpfile(void) {
  return __stream_open(__debug_io(DEBUG_TMPFILE, 0), "w+");
}

int fclose(FILE *stream) {
  int result = __stream_flush(stream);
  if (stream->handle != 0 && DEBUG_CALL(DEBUG_FCLOSE, DEBUG_WORD(stream->handle)) != 0)
    result = EOF;
  // It stays where exit finds it, with nothing to be flushed.
  stream->flags &= STREAM_LISTED;
  return result;
}

FILE *freopen(const char *name, const char *mode, FILE *stream) {
  fclose(stream);
  const int handle = DEBUG_CALL(DEBUG_FOPEN, DEBUG_WORD(name), DEBUG_WORD(mode));
  if (handle < 0) {
    errno = EIO;
    return NULL;
  }
  return begin(stream, handle, mode);
}

char *tmpnam(char *buffer) {
  static char name[L_tmpnam];
  if (!buffer)
    buffer = name;
  return DEBUG_CALL(DEBUG_TMPNAM, DEBUG_WORD(buffer), L_tmpnam) == 0 ? buffer : NULL;
}

static int checked(int result) {
  if (result != 0)
    errno = EIO;
  return result;
}

int remove(const char *name) {
  return checked(DEBUG_CALL(DEBUG_REMOVE, DEBUG_WORD(name)));
}

int rename(const char *old_name, const char *new_name) {
  return checked(DEBUG_CALL(DEBUG_RENAME, DEBUG_WORD(old_name), DEBUG_WORD(new_name)));
}
