#include <signal.h>
#include <stdlib.h>

void abort(void) {
  raise(SIGABRT);
  _Exit(128 + SIGABRT);
}
