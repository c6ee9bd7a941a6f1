#include <stdlib.h>

extern void _exit(int code) __attribute__((__noreturn__));

// Set by what needs them when it is first used, so that a program without them has none of
// their code.
void (*__exit_handlers)(void);
void (*__exit_streams)(void);

void exit(int code) {
  if (__exit_handlers)
    __exit_handlers();
  if (__exit_streams)
    __exit_streams();
  _exit(code);
}

void _Exit(int code) {
  _exit(code);
}
