// Cells on a torus, with nested loops over bytes.
#include <stdint.h>
#include <stdio.h>
#include <string.h>

enum { WIDTH = 16, HEIGHT = 10 };

static uint8_t cells[HEIGHT][WIDTH];

static int neighbours(int row, int column) {
  int count = 0;
  for (int y = -1; y <= 1; y++)
    for (int x = -1; x <= 1; x++)
      if (x != 0 || y != 0)
        count += cells[(row + y + HEIGHT) % HEIGHT][(column + x + WIDTH) % WIDTH];
  return count;
}

static void step(void) {
  uint8_t next[HEIGHT][WIDTH];
  for (int row = 0; row < HEIGHT; row++)
    for (int column = 0; column < WIDTH; column++) {
      const int count = neighbours(row, column);
      next[row][column] = count == 3 || (count == 2 && cells[row][column]);
    }
  memcpy(cells, next, sizeof cells);
}

int main(void) {
  static const uint8_t glider[5][2] = {{0, 1}, {1, 2}, {2, 0}, {2, 1}, {2, 2}};
  for (int i = 0; i < 5; i++)
    cells[glider[i][0]][glider[i][1]] = cells[glider[i][0] + 5][15 - glider[i][1]] = 1;
  for (int i = 0; i < 12; i++)
    step();
  for (int row = 0; row < HEIGHT; row++) {
    for (int column = 0; column < WIDTH; column++)
      putchar(cells[row][column] ? 'O' : '.');
    putchar('\n');
  }
  return 0;
}
