// Structures passed, returned, copied and nested; arrays of them; compound literals.
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

typedef struct { int16_t x, y; } Point;
typedef struct { Point from, to; char name[6]; } Line;
typedef struct { int64_t wide; uint8_t small; double real; Point point; } Mixed;
typedef struct { uint8_t one; } Tiny;

static Point add(Point a, Point b) {
  return (Point){(int16_t)(a.x + b.x), (int16_t)(a.y + b.y)};
}

static Line move(Line line, Point by) {
  line.from = add(line.from, by);
  line.to = add(line.to, by);
  line.name[0]++;
  return line;
}

static Mixed twice(Mixed mixed) {
  mixed.wide *= 2;
  mixed.small *= 2;
  mixed.real *= 2;
  mixed.point = add(mixed.point, mixed.point);
  return mixed;
}

static Tiny next(Tiny tiny) {
  return (Tiny){(uint8_t)(tiny.one + 1)};
}

static int32_t sum(const Line *lines, int count) {
  int32_t total = 0;
  for (; count-- > 0; lines++)
    total += lines->from.x + lines->from.y + lines->to.x + lines->to.y;
  return total;
}

int main(void) {
  Line lines[4] = {{{1, 2}, {3, 4}, "alpha"}, {.to = {-5, 6}, .name = "beta"}};
  for (int i = 2; i < 4; i++)
    lines[i] = move(lines[i - 1], (Point){(int16_t)(10 * i), (int16_t)-i});
  for (int i = 0; i < 4; i++)
    printf("%d,%d %d,%d <%s>\n", lines[i].from.x, lines[i].from.y, lines[i].to.x, lines[i].to.y,
           lines[i].name);
  printf("%" PRId32 "\n", sum(lines, 4));
  Mixed mixed = {-123456789012, 100, 1.5, {7, -8}};
  mixed = twice(twice(mixed));
  printf("%" PRId64 " %d %g %d,%d\n", mixed.wide, mixed.small, mixed.real, mixed.point.x,
         mixed.point.y);
  Line copy = lines[3];
  printf("%d %d\n", memcmp(&copy, &lines[3], sizeof copy) == 0, next(next((Tiny){254})).one);
  const Point *points = (const Point[]){{1, 1}, {2, 4}, {3, 9}};
  printf("%d\n", points[2].y - points[1].y);
  return 0;
}
