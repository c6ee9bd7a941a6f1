// setjmp and longjmp across frames, with registers and locals kept; computed exits from loops.
#include <setjmp.h>
#include <stdio.h>

static jmp_buf top, nested;

static void descend(int depth) {
  char filler[10];
  filler[depth % 10] = (char)depth;
  if (depth == 0)
    longjmp(top, 7);
  descend(depth - 1 + (filler[depth % 10] - depth));
  printf("never\n");
}

static int inner(int value) {
  const int code = setjmp(nested);
  if (code == 0) {
    if (value > 2)
      longjmp(nested, value);
    return -value;
  }
  return code * 10;
}

int main(void) {
  volatile int rounds = 0;
  int kept = 1234;
  const int code = setjmp(top);
  printf("code %d, rounds %d, kept %d\n", code, rounds, kept);
  if (rounds < 3) {
    rounds++;
    descend(rounds * 5);
  }
  for (int i = 0; i < 5; i++)
    printf("%d ", inner(i));
  if (setjmp(top) == 0)
    longjmp(top, 0);
  else
    printf("zero became one\n");
  int i = 0;
again:
  if (i++ < 3) {
    printf("%d", i);
    goto again;
  }
  printf("\n");
  return 0;
}
