#include "stream.h"

#include <string.h>

#undef getc
#undef putc

int fgetc(FILE *stream) {
  return __stream_get(stream);
}

int getc(FILE *stream) {
  return __stream_get(stream);
}

int getchar(void) {
  return __stream_get(stdin);
}

int ungetc(int character, FILE *stream) {
  if (character == EOF || (stream->flags & STREAM_PUSHED))
    return EOF;
  stream->pushed = (unsigned char)character;
  stream->flags = (unsigned char)((stream->flags | STREAM_PUSHED) & ~STREAM_END);
  return stream->pushed;
}

int fputc(int character, FILE *stream) {
  return __stream_put(stream, character);
}

int putc(int character, FILE *stream) {
  return __stream_put(stream, character);
}

int putchar(int character) {
  return __stream_put(stdout, character);
}

int fputs(const char *text, FILE *stream) {
  const unsigned length = strlen(text);
  return __stream_write(stream, text, length) == length ? 0 : EOF;
}

int puts(const char *text) {
  return fputs(text, stdout) < 0 ? EOF : __stream_put(stdout, '\n');
}
