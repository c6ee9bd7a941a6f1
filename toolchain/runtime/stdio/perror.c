#include "stream.h"

#include "../debugio/debug_io.h"

#include <errno.h>
#include <string.h>

void perror(const char *prefix) {
  fflush(stdout);
  if (errno == EIO) {
    // The host's operation failed, and only the host knows why.
    DEBUG_CALL(DEBUG_PERROR, DEBUG_WORD(prefix ? prefix : ""));
    return;
  }
  if (prefix && *prefix) {
    fputs(prefix, stderr);
    fputs(": ", stderr);
  }
  fputs(strerror(errno), stderr);
  fputs("\n", stderr);
}
