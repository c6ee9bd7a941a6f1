// Single precision: arithmetic, conversions, comparisons, special values.
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

static uint32_t bits(float value) {
  uint32_t result;
  memcpy(&result, &value, sizeof result);
  return result;
}

int main(void) {
  static const float values[] = {0.0f, 1.0f, -1.5f, 3.14159274f, 1e10f, 1e-10f, 16777216.0f, 0.1f};
  for (int i = 0; i < 8; i++)
    for (int j = 0; j < 8; j++) {
      const volatile float a = values[i], b = values[j];
      printf("%08" PRIx32 " %08" PRIx32 " %08" PRIx32, bits(a + b), bits(a - b), bits(a * b));
      if (b != 0)
        printf(" %08" PRIx32, bits(a / b));
      printf(" %d%d%d\n", a < b, a <= b, a == b);
    }
  volatile float tiny = 1.17549435e-38f;
  printf("%08" PRIx32 " %08" PRIx32 "\n", bits(tiny / 2), bits(tiny / 8388608));
  volatile float huge = 3e38f;
  printf("%08" PRIx32 " %d\n", bits(huge * 10), huge * 10 > huge);
  for (volatile int32_t i = -7; i < 2000000000 / 3; i = i * 5 + 31)
    printf("%g %" PRId32 " %d\n", (double)(float)i, (int32_t)((float)i / 3), (int16_t)((float)i / 1e6f));
  volatile uint64_t big = 18446744073709551615u;
  printf("%g %" PRIu64 "\n", (double)(float)big, (uint64_t)(float)(big / 3));
  float sum = 0;
  for (int i = 1; i <= 100; i++)
    sum += 1.0f / (float)i;
  printf("%.7g\n", (double)sum);
  return 0;
}
