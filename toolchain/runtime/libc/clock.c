#include "../debugio/debug_io.h"

#include <time.h>

time_t time(time_t *target) {
  unsigned long seconds = 0;
  DEBUG_CALL(DEBUG_TIME, DEBUG_WORD(&seconds));
  if (target)
    *target = (time_t)seconds;
  return (time_t)seconds;
}

// There is no clock that every device has.
clock_t clock(void) {
  return (clock_t)-1;
}
