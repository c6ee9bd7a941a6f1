// Shifts by constants and by variables, rotations, masks and bit counts.
#include <inttypes.h>
#include <stdio.h>

static uint16_t rotate16(uint16_t value, int by) {
  return (uint16_t)(value << by | value >> ((16 - by) & 15));
}

static uint32_t rotate32(uint32_t value, int by) {
  return value << by | value >> ((32 - by) & 31);
}

static int count_bits(uint64_t value) {
  int count = 0;
  for (; value != 0; value &= value - 1)
    count++;
  return count;
}

static uint32_t reverse(uint32_t value) {
  value = (value >> 1 & 0x55555555) | (value & 0x55555555) << 1;
  value = (value >> 2 & 0x33333333) | (value & 0x33333333) << 2;
  value = (value >> 4 & 0x0f0f0f0f) | (value & 0x0f0f0f0f) << 4;
  value = (value >> 8 & 0x00ff00ff) | (value & 0x00ff00ff) << 8;
  return value >> 16 | value << 16;
}

int main(void) {
  const volatile uint64_t pattern = 0x123456789abcdef0;
  const volatile int64_t negative = -0x123456789abcdef0;
  for (volatile int by = 0; by < 64; by += 7)
    printf("%2d %016" PRIx64 " %016" PRIx64 " %016" PRIx64 "\n", by, pattern << by, pattern >> by,
           (uint64_t)(negative >> by));
  for (volatile int by = 0; by < 32; by += 3)
    printf("%2d %08" PRIx32 " %08" PRIx32 " %08" PRIx32 "\n", by, (uint32_t)pattern << by,
           (uint32_t)pattern >> by, (uint32_t)((int32_t)negative >> by));
  for (volatile int by = 0; by < 16; by++)
    printf("%2d %04x %04x %04x %04x\n", by, (unsigned)(uint16_t)((uint16_t)pattern << by),
           (unsigned)((uint16_t)pattern >> by), (unsigned)(uint16_t)((int16_t)negative >> by),
           (unsigned)rotate16((uint16_t)pattern, by));
  printf("%" PRIx32 " %" PRIx32 " %" PRIx32 "\n", (uint32_t)pattern << 1, (uint32_t)pattern << 16,
         (uint32_t)pattern << 31);
  printf("%" PRIx64 " %" PRIx64 " %" PRIx64 "\n", pattern << 1, pattern << 17, pattern >> 48);
  printf("%" PRIx32 " %d %" PRIx32 "\n", rotate32(0x80000001, 5), count_bits(pattern),
         reverse(0x12345678));
  return 0;
}
