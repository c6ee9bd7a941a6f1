#include "read_real.h"

#include <stdlib.h>

float strtof(const char *text, char **end) {
  return read_real(text, end);
}
