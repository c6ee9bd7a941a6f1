// State machines, generators by switch, callbacks in interrupts' manner.
#include <stdint.h>
#include <stdio.h>

typedef struct { int16_t line, i, j; } Generator;

// Pairs below a limit, one at each call.
static int pairs(Generator *g, int limit, int *a, int *b) {
  switch (g->line) {
    case 0:
      for (g->i = 0; g->i < limit; g->i++) {
        for (g->j = 0; g->j < g->i; g->j++) {
          *a = g->i;
          *b = g->j;
          g->line = 1;
          return 1;
    case 1:;
        }
      }
  }
  g->line = 2;
  return 0;
}

typedef enum { IDLE, NUMBER, WORD, ESCAPE } State;

static const uint8_t transitions[4][4] = {
  {IDLE, NUMBER, WORD, ESCAPE},
  {IDLE, NUMBER, IDLE, ESCAPE},
  {IDLE, WORD, WORD, ESCAPE},
  {WORD, WORD, WORD, IDLE},
};

static int class_of(char c) {
  return c >= '0' && c <= '9' ? 1 : c >= 'a' && c <= 'z' ? 2 : c == '\\' ? 3 : 0;
}

int main(void) {
  Generator generator = {0, 0, 0};
  int a, b;
  while (pairs(&generator, 5, &a, &b))
    printf("%d%d ", a, b);
  printf("\n");
  State state = IDLE;
  unsigned visits[4] = {0};
  for (const char *c = "ab12 34x \\\\ z\\n9 100\\"; *c; c++) {
    state = (State)transitions[state][class_of(*c)];
    visits[state]++;
    putchar("inwe"[state]);
  }
  printf("\n%u %u %u %u\n", visits[0], visits[1], visits[2], visits[3]);
  return 0;
}
