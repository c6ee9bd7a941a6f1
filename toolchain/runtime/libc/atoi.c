#include <stdlib.h>

int atoi(const char *text) {
  return (int)strtol(text, NULL, 10);
}

long atol(const char *text) {
  return strtol(text, NULL, 10);
}

long long atoll(const char *text) {
  return strtoll(text, NULL, 10);
}
