#include "debug_io.h"

int __debug_io_wait(unsigned operation, const void *arguments, int again) {
  int result;
  do
    result = __debug_io(operation, arguments);
  while (result == again);
  return result;
}
