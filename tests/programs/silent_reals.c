// No output: a sum over single and double precision is the result.
#include <stdint.h>
#include <string.h>

static uint32_t sum;

static void note(double value) {
  uint32_t words[2];
  memcpy(words, &value, sizeof words);
  sum = (sum ^ words[0]) * 16777619u;
  sum = (sum ^ words[1]) * 16777619u;
}

int main(void) {
  volatile double x = 1.25;
  volatile float y = 0.75f;
  for (int i = 1; i < 60; i++) {
    x = x * 1.7 - 3.3 / i;
    y = y * -1.3f + 2.0f / (float)i;
    note(x + y);
    note((double)(int32_t)y);
    note(x / y);
    note(x < y ? 1 : -1);
    note((float)x);
  }
  return (int)(sum >> 16 & 0x7f);
}
