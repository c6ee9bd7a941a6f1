// Arrays of variable length, alloca-like use, multi-dimensional parameters, pointers into arrays.
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

static int32_t trace(int n, int16_t m[n][n]) {
  int32_t sum = 0;
  for (int i = 0; i < n; i++)
    sum += m[i][i] - m[n - 1 - i][i];
  return sum;
}

static int32_t fill(int n) {
  int16_t m[n][n];
  for (int i = 0; i < n; i++)
    for (int j = 0; j < n; j++)
      m[i][j] = (int16_t)(i * n + j * j);
  return trace(n, m);
}

static void reverse(char *text) {
  const size_t length = strlen(text);
  char copy[length + 1];
  for (size_t i = 0; i < length; i++)
    copy[i] = text[length - 1 - i];
  copy[length] = 0;
  strcpy(text, copy);
}

static int32_t nested(int depth) {
  int32_t values[depth + 1];
  values[depth] = depth;
  if (depth > 0)
    values[depth] += nested(depth - 1) * 2;
  return values[depth];
}

int main(void) {
  for (int n = 1; n < 8; n++)
    printf("%" PRId32 " ", fill(n));
  char text[] = "stressed";
  reverse(text);
  printf("\n%s %" PRId32 "\n", text, nested(12));
  int16_t grid[3][4] = {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}};
  int16_t (*row)[4] = grid;
  const int16_t *cell = &grid[0][0];
  printf("%d %d %d", row[2][1], cell[11], (int)(&grid[2][3] - cell));
  printf(" %d\n", (*++row)[0]);
  return 0;
}
