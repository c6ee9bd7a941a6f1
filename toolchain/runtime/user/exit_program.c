#include "../debugio/debug_io.h"

// The end of the program. Without a debugger the processor stays here.
void _exit(int code) {
  for (;;)
    DEBUG_CALL(DEBUG_EXIT, DEBUG_WORD(code));
}
