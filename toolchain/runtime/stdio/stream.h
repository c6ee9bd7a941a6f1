#pragma once

#include <stdio.h>

enum {
  STREAM_READ = 1,
  STREAM_WRITE = 2,
  STREAM_LINES = 4,     ///< a line's end empties the buffer
  STREAM_END = 8,
  STREAM_ERROR = 16,
  STREAM_PUSHED = 32,   ///< a character has been given back
  STREAM_LISTED = 64,   ///< among those that exit flushes
};

/// An open stream. Without a buffer every write goes to the host at once.
struct __stdio_file {
  unsigned char flags;   ///< 0 if it isn't open
  unsigned char pushed;
  int handle;            ///< the host's; 0, its terminal, for all three standard streams
  char *buffer;
  unsigned size;
  unsigned used;         ///< characters in the buffer
  struct __stdio_file *next;
};

/// EOF on failure, as from the standard functions.
int __stream_get(FILE *stream);
int __stream_put(FILE *stream, int character);
unsigned __stream_write(FILE *stream, const char *data, unsigned length);
/// Sends what the buffer holds to the host.
int __stream_flush(FILE *stream);

/// Opens on a free stream with the flags of a mode like "r+"; null if none is free or the
/// handle is negative.
FILE *__stream_open(int handle, const char *mode);

/// Notes that a host's operation failed; the answer is EOF.
int __stream_failed(FILE *stream);

/// Called by exit, if it isn't null.
extern void (*__exit_streams)(void);
