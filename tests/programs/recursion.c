// Deep and branching recursion.
#include <inttypes.h>
#include <stdio.h>

static uint32_t ackermann(uint32_t m, uint32_t n) {
  if (m == 0)
    return n + 1;
  return n == 0 ? ackermann(m - 1, 1) : ackermann(m - 1, ackermann(m, n - 1));
}

static uint32_t fibonacci(int n) {
  return n < 2 ? (uint32_t)n : fibonacci(n - 1) + fibonacci(n - 2);
}

static uint16_t moves;

static void hanoi(int disks, char from, char to, char by) {
  if (disks == 0)
    return;
  hanoi(disks - 1, from, by, to);
  moves++;
  hanoi(disks - 1, by, to, from);
}

static int queens(int row, int size, uint16_t columns, uint16_t left, uint16_t right) {
  if (row == size)
    return 1;
  int solutions = 0;
  for (int column = 0; column < size; column++) {
    const uint16_t bit = (uint16_t)(1u << column);
    if ((columns | left | right) & bit)
      continue;
    solutions += queens(row + 1, size, columns | bit, (uint16_t)((left | bit) << 1),
                        (uint16_t)((right | bit) >> 1));
  }
  return solutions;
}

static void permute(char *text, int from, int *count, uint32_t *hash) {
  if (!text[from]) {
    ++*count;
    for (const char *c = text; *c; c++)
      *hash = (*hash ^ (uint8_t)*c) * 16777619u;
    return;
  }
  for (int i = from; text[i]; i++) {
    char c = text[from];
    text[from] = text[i];
    text[i] = c;
    permute(text, from + 1, count, hash);
    c = text[from];
    text[from] = text[i];
    text[i] = c;
  }
}

int main(void) {
  printf("%" PRIu32 " %" PRIu32 "\n", ackermann(2, 9), fibonacci(18));
  hanoi(10, 'A', 'B', 'C');
  printf("%u %d %d\n", moves, queens(0, 6, 0, 0, 0), queens(0, 7, 0, 0, 0));
  char text[] = "abcde";
  int count = 0;
  uint32_t hash = 2166136261u;
  permute(text, 0, &count, &hash);
  printf("%d %08" PRIx32 "\n", count, hash);
  return 0;
}
