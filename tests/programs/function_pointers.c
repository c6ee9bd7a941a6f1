// Tables of functions, callbacks with a context, functions that return functions.
#include <stdint.h>
#include <stdio.h>

typedef int32_t (*Operation)(int32_t, int32_t);

static int32_t add(int32_t a, int32_t b) { return a + b; }
static int32_t subtract(int32_t a, int32_t b) { return a - b; }
static int32_t multiply(int32_t a, int32_t b) { return a * b; }
static int32_t larger(int32_t a, int32_t b) { return a > b ? a : b; }

static const struct { char symbol; Operation operation; } table[] = {
  {'+', add}, {'-', subtract}, {'*', multiply}, {'>', larger},
};

static Operation find(char symbol) {
  for (unsigned i = 0; i < sizeof table / sizeof table[0]; i++)
    if (table[i].symbol == symbol)
      return table[i].operation;
  return NULL;
}

static int32_t reduce(Operation operation, const int16_t *values, int count) {
  int32_t result = values[0];
  for (int i = 1; i < count; i++)
    result = operation(result, values[i]);
  return result;
}

static void each(int count, void (*visit)(int index, void *context), void *context) {
  for (int i = 0; i < count; i++)
    visit(i, context);
}

static void accumulate(int index, void *context) { *(long *)context += index * index; }
static void show(int index, void *context) { printf("%s%d", (const char *)context, index); }

int main(void) {
  static const int16_t values[] = {3, -5, 11, 7, -2};
  for (const char *symbol = "+-*>?"; *symbol; symbol++) {
    const Operation operation = find(*symbol);
    if (operation)
      printf("%c %ld\n", *symbol, (long)reduce(operation, values, 5));
    else
      printf("%c none\n", *symbol);
  }
  long total = 0;
  each(20, accumulate, &total);
  each(5, show, " ");
  printf("\n%ld\n", total);
  return 0;
}
