// exit: handlers in reverse order, buffered output, the status.
#include <stdio.h>
#include <stdlib.h>

static void first(void) { printf("first registered\n"); }
static void second(void) { printf("second registered"); }

static void third(void) {
  printf("third registered\n");
  atexit(second);
}

int main(void) {
  atexit(first);
  atexit(third);
  printf("leaving");
  exit(42);
}
