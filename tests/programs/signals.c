// signal and raise, abort's handler, assertions that hold.
#include <assert.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>

static volatile sig_atomic_t seen;

static void note(int number) {
  seen += number == SIGINT ? 1 : 10;
}

static void aborted(int number) {
  (void)number;
  printf("aborting\n");
  exit(3);
}

int main(void) {
  assert(1 + 1 == 2);
  printf("%d\n", signal(SIGINT, note) == SIG_DFL);
  raise(SIGINT);
  signal(SIGTERM, note);
  raise(SIGTERM);
  signal(SIGTERM, SIG_IGN);
  raise(SIGTERM);
  printf("%d\n", (int)seen);
  signal(SIGABRT, aborted);
  abort();
}
