#include "stream.h"

char *fgets(char *buffer, int size, FILE *stream) {
  int length = 0;
  while (length < size - 1) {
    const int character = __stream_get(stream);
    if (character < 0)
      break;
    buffer[length++] = (char)character;
    if (character == '\n')
      break;
  }
  if (length == 0)
    return NULL;
  buffer[length] = 0;
  return buffer;
}

char *gets(char *buffer) {
  char *end = buffer;
  int character;
  while ((character = __stream_get(stdin)) >= 0 && character != '\n')
    *end++ = (char)character;
  *end = 0;
  return character < 0 && end == buffer ? NULL : buffer;
}
