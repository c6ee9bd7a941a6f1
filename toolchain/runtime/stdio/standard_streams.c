#include "stream.h"

static char line[BUFSIZ];

FILE __stdio_in = {.flags = STREAM_READ};
FILE __stdio_out = {.flags = STREAM_WRITE | STREAM_LINES, .buffer = line, .size = sizeof line};
FILE __stdio_err = {.flags = STREAM_WRITE};
