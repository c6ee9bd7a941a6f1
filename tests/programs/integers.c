// Arithmetic in every width, over operands at and around the limits.
#include <inttypes.h>
#include <stdio.h>

#define SHOW(type, format, list)                                                        \
  static void show_##type(void) {                                                       \
    static const type values[] = list;                                                  \
    enum { COUNT = sizeof values / sizeof values[0] };                                  \
    for (int i = 0; i < COUNT; i++)                                                     \
      for (int j = 0; j < COUNT; j++) {                                                 \
        const volatile type a = values[i], b = values[j];                               \
        printf("%" format " %" format ": ", a, b);                                      \
        printf("%" format " %" format " %" format, (type)((uint64_t)a + (uint64_t)b),    \
               (type)((uint64_t)a - (uint64_t)b), (type)((uint64_t)a * (uint64_t)b));    \
        if (b != 0 && !(b == (type)-1))                                                 \
          printf(" %" format " %" format, (type)(a / b), (type)(a % b));                 \
        printf(" %d%d%d\n", a < b, a == b, a > b);                                      \
      }                                                                                 \
  }

#define LIST(...) {__VA_ARGS__}

SHOW(int8_t, PRId8, LIST(0, 1, -1, 7, -7, INT8_MAX, INT8_MIN))
SHOW(uint8_t, PRIu8, LIST(0, 1, 3, 100, 127, 128, UINT8_MAX))
SHOW(int16_t, PRId16, LIST(0, 1, -1, 10, -1000, INT16_MAX, INT16_MIN))
SHOW(uint16_t, PRIu16, LIST(0, 1, 255, 256, 1000, 32768, UINT16_MAX))
SHOW(int32_t, PRId32, LIST(0, 1, -1, 65535, -65536, 1000000007, INT32_MAX, INT32_MIN))
SHOW(uint32_t, PRIu32, LIST(0, 1, 65536, 65537, 3000000000u, UINT32_MAX))
SHOW(int64_t, PRId64, LIST(0, 1, -1, 4294967296, -4294967297, 1000000000000000003, INT64_MAX, INT64_MIN))
SHOW(uint64_t, PRIu64, LIST(0, 1, 10, 65536, 4294967295u, 12345678901234567890u, UINT64_MAX))

int main(void) {
  show_int8_t();
  show_uint8_t();
  show_int16_t();
  show_uint16_t();
  show_int32_t();
  show_uint32_t();
  show_int64_t();
  show_uint64_t();
  return 0;
}
