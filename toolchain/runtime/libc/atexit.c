#include <stdlib.h>

extern void (*__exit_handlers)(void);

// As many as the standard asks for.
enum { HANDLERS_MOST = 32 };

static void (*handlers[HANDLERS_MOST])(void);
static int count;

static void run_handlers(void) {
  while (count > 0)
    handlers[--count]();
}

int atexit(void (*handler)(void)) {
  if (count == HANDLERS_MOST)
    return -1;
  handlers[count++] = handler;
  __exit_handlers = run_handlers;
  return 0;
}
