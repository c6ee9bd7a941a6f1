#include "debugio.h"

#include "debug_io.h"

void debug_exit(int code) {
  // The host leaves the control word set, so that this doesn't return.
  for (;;)
    DEBUG_CALL(DEBUG_EXIT, DEBUG_WORD(code));
}

void debug_break(void) {
  __debug_io(DEBUG_BREAK, 0);
}

void debug_runtime_error(const char *text) {
  // This one takes the string itself in place of an argument block.
  __debug_io(DEBUG_RUNTIME_ERROR, text);
}

void debug_assert_failed(void) {
  __debug_io(DEBUG_ASSERT_FAILED, 0);
}

unsigned long debug_time(void) {
  unsigned long seconds = 0;
  DEBUG_CALL(DEBUG_TIME, DEBUG_WORD(&seconds));
  return seconds;
}

int debug_getenv(const char *name, char *buffer, size_t size) {
  return DEBUG_CALL(DEBUG_GETENV, DEBUG_WORD(name), DEBUG_WORD(buffer), size);
}

int debug_system(const char *command) {
  return DEBUG_CALL(DEBUG_SYSTEM, DEBUG_WORD(command));
}

int debug_getargs(void *buffer, size_t size) {
  return DEBUG_CALL(DEBUG_ARGUMENTS, DEBUG_WORD(buffer), size);
}

void debug_loadsymbols(const char *file_name, const void *address) {
  DEBUG_CALL(DEBUG_LOAD_SYMBOLS, DEBUG_WORD(file_name), DEBUG_WORD(address));
}
