#include <math.h>

int _signgam_state;

int *__signgam(void) {
  return &_signgam_state;
}
