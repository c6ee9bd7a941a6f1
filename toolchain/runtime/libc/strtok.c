#include <string.h>

char *strtok(char *text, const char *separators) {
  static char *rest;
  return strtok_r(text, separators, &rest);
}
