#include <errno.h>
#include <sys/reent.h>

struct _reent _reent_state;

int *__errno(void) {
  return &_reent_state._errno;
}
