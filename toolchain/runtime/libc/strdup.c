#include <stdlib.h>
#include <string.h>

char *strndup(const char *text, size_t most) {
  const size_t length = strnlen(text, most);
  char *copy = malloc(length + 1);
  if (!copy)
    return NULL;
  copy[length] = 0;
  return memcpy(copy, text, length);
}

char *strdup(const char *text) {
  return strndup(text, (size_t)-1);
}
