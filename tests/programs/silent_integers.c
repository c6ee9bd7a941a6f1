// No output: a sum over arithmetic of every width is the result.
#include <stdint.h>

static uint16_t sum;

static void note(uint64_t value) {
  for (int i = 0; i < 4; i++)
    sum = (uint16_t)((sum << 3 | sum >> 13) ^ (uint16_t)(value >> (16 * i)));
}

int main(void) {
  uint64_t a = 0x9e3779b97f4a7c15, b = 3;
  for (int i = 0; i < 60; i++) {
    a = a * 6364136223846793005u + 1442695040888963407u;
    b = b << 5 ^ a >> 27;
    note(a % (b | 1));
    note((uint64_t)((int64_t)a / ((int64_t)b | 1)));
    note((uint64_t)(int64_t)((int32_t)a % ((int32_t)b | 1)));
    note((uint32_t)a * (uint32_t)b);
    note((uint16_t)((uint16_t)a / ((uint16_t)b | 1)));
    note((uint64_t)((int64_t)a >> (i & 63)));
    note((uint32_t)((uint32_t)b << (i & 31)));
  }
  return sum & 0x7f;
}
