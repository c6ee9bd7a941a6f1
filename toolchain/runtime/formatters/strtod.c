#define REAL_DOUBLE
#include "read_real.h"

#include <stdlib.h>

double strtod(const char *text, char **end) {
  return read_real(text, end);
}

long double strtold(const char *text, char **end) {
  return strtod(text, end);
}

double atof(const char *text) {
  return strtod(text, NULL);
}
