#include "../debugio/debug_io.h"

#include <stdlib.h>

char *getenv(const char *name) {
  static char value[64];
  return DEBUG_CALL(DEBUG_GETENV, DEBUG_WORD(name), DEBUG_WORD(value), sizeof value) == 0 ? value
                                                                                          : NULL;
}

int system(const char *command) {
  return command ? DEBUG_CALL(DEBUG_SYSTEM, DEBUG_WORD(command)) : 1;
}
