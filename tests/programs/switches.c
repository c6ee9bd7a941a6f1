// Switches: dense tables, sparse values, ranges of characters, fall-through, wide types.
#include <inttypes.h>
#include <stdio.h>

static const char *dense(int value) {
  switch (value) {
    case 0: return "zero";
    case 1: return "one";
    case 2: return "two";
    case 3: return "three";
    case 4: return "four";
    case 5: return "five";
    case 6: return "six";
    case 7: return "seven";
    default: return "many";
  }
}

static int sparse(int32_t value) {
  switch (value) {
    case -2000000000: return 1;
    case -1: return 2;
    case 17: return 3;
    case 4096: return 4;
    case 100000: return 5;
    case 2000000000: return 6;
  }
  return 0;
}

static int fall(int value) {
  int result = 0;
  switch (value) {
    case 3: result += 100;  // fall through
    case 2: result += 10;   // fall through
    case 1: result += 1; break;
    case 9: result = 9;
  }
  return result;
}

static int wide(uint64_t value) {
  switch (value) {
    case 1: return 1;
    case 0x100000000: return 2;
    case 0xffffffffffffffff: return 3;
    default: return 4;
  }
}

// A loop that is entered in its middle.
static void duff(char *to, const char *from, int count) {
  int rounds = (count + 3) / 4;
  switch (count % 4) {
    case 0: do { *to++ = *from++;  // fall through
    case 3:      *to++ = *from++;  // fall through
    case 2:      *to++ = *from++;  // fall through
    case 1:      *to++ = *from++;
            } while (--rounds > 0);
  }
}

int main(void) {
  for (int i = -1; i < 9; i++)
    printf("%s %d\n", dense(i), fall(i));
  static const int32_t values[] = {-2000000000, -1, 0, 17, 18, 4096, 100000, 2000000000};
  for (int i = 0; i < 8; i++)
    printf("%d", sparse(values[i]));
  printf("\n%d%d%d%d\n", wide(1), wide(0x100000000), wide(UINT64_MAX), wide(0));
  for (int count = 1; count < 10; count++) {
    char text[12] = "..........";
    duff(text, "abcdefghij", count);
    printf("%s\n", text);
  }
  return 0;
}
