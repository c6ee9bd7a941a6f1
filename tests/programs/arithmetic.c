// Pseudo-random and extreme operands through every arithmetic operation that the compiler
// leaves to the run-time library. Prints a hash for each 32 cases, the same on any machine with
// IEEE 754 arithmetic; with VERBOSE every single case, to find the one that differs.

#include <stdint.h>
#include <stdio.h>

#ifndef SEED
#define SEED 2463534242u
#define BLOCKS 6
#endif

static void show_hex(uint64_t value, int digits) {
  while (digits-- > 0)
    putchar("0123456789abcdef"[(value >> (4 * digits)) & 15]);
}

// ---- Operands

static uint32_t random_state;

static uint32_t random32(void) {
  random_state ^= random_state << 13;
  random_state ^= random_state >> 17;
  random_state ^= random_state << 5;
  return random_state;
}

// Widths from nothing to full, with runs of ones and zeros.
static uint64_t random_bits(void) {
  uint64_t bits = ((uint64_t)random32() << 32) | random32();
  uint32_t shape = random32();
  if (shape & 1)
    bits >>= (shape >> 8) & 63;
  if (shape & 2)
    bits |= ~(uint64_t)0 << ((shape >> 16) & 63);
  if (shape & 4)
    bits &= ~(uint64_t)0 << ((shape >> 24) & 63);
  return (shape & 8) ? ~bits : bits;
}

typedef union { double value; uint64_t bits; } Double;
typedef union { float value; uint32_t bits; } Float;

static Double double_of(uint64_t bits) { Double d; d.bits = bits; return d; }
static Float float_of(uint32_t bits) { Float f; f.bits = bits; return f; }

static const uint64_t double_extremes[] = {
  0, 1, 2, 0x000fffffffffffff, 0x0010000000000000, 0x0010000000000001, 0x3ff0000000000000,
  0x3ff0000000000001, 0x3fefffffffffffff, 0x7fefffffffffffff, 0x7ff0000000000000,
  0x7ff8000000000000, 0x4340000000000000, 0x3fe0000000000000, 0x7ff0000000000001,
  0x36a0000000000000,
};
static const uint32_t float_extremes[] = {
  0, 1, 2, 0x007fffff, 0x00800000, 0x00800001, 0x3f800000, 0x3f800001, 0x3f7fffff, 0x7f7fffff,
  0x7f800000, 0x7fc00000, 0x4b800000, 0x3f000000, 0x7f800001, 0x00400000,
};

static Double random_double(Double near) {
  uint32_t shape = random32();
  uint64_t bits = random_bits();
  switch (shape & 7) {
    case 0: bits = double_extremes[(shape >> 4) & 15]; break;
    case 1: case 2:  // An exponent close to the other operand's
      bits = (bits & 0x000fffffffffffff) |
             ((near.bits + ((uint64_t)((shape >> 8) % 120) << 52)) & 0x7ff0000000000000);
      break;
    case 3:  // Moderate exponents
      bits = (bits & 0x000fffffffffffff) | ((uint64_t)(960 + (shape >> 8) % 128) << 52);
      break;
    case 4: bits = near.bits + (shape >> 20) - 2048; break;
    case 5: bits &= 0x000fffffffffffff; break;
    default: break;
  }
  return double_of(bits ^ ((uint64_t)(shape >> 31) << 63));
}

static Float random_float(Float near) {
  uint32_t shape = random32();
  uint32_t bits = (uint32_t)random_bits();
  switch (shape & 7) {
    case 0: bits = float_extremes[(shape >> 4) & 15]; break;
    case 1: case 2:
      bits = (bits & 0x007fffff) | ((near.bits + (((shape >> 8) % 50) << 23)) & 0x7f800000);
      break;
    case 3: bits = (bits & 0x007fffff) | ((96 + (shape >> 8) % 64) << 23); break;
    case 4: bits = near.bits + (shape >> 24) - 128; break;
    case 5: bits &= 0x007fffff; break;
    default: break;
  }
  return float_of(bits ^ (shape & 0x80000000));
}

static int double_is_nan(Double d) { return (d.bits & 0x7fffffffffffffff) > 0x7ff0000000000000; }
static int float_is_nan(Float f) { return (f.bits & 0x7fffffff) > 0x7f800000; }

// ---- Results

static uint32_t hash;

static void result(uint64_t bits) {
  for (int i = 0; i < 8; i++) {
    hash = (hash ^ (uint8_t)(bits >> (8 * i))) * 16777619u;
  }
#ifdef VERBOSE
  putchar(' ');
  show_hex(bits, 16);
#endif
}

static void double_result(double value) {
  Double d;
  d.value = value;
  result(double_is_nan(d) ? 0x7ff8000000000000 : d.bits);
}

static void float_result(float value) {
  Float f;
  f.value = value;
  result(float_is_nan(f) ? 0x7fc00000 : f.bits);
}

// ---- Operations. `volatile` keeps the compiler from folding or narrowing any of them.

#define INTEGER_OPERATIONS(name, type, utype, width)                        \
  static void name(void) {                                                  \
    volatile type a = (type)random_bits(), b = (type)random_bits();         \
    volatile utype ua = (utype)a, ub = (utype)b;                            \
    volatile int count = (int)(random32() % width);                         \
    result((uint64_t)(utype)(ua * ub));                                     \
    result((uint64_t)(utype)(ua << count));                                 \
    result((uint64_t)(utype)(ua >> count));                                 \
    result((uint64_t)(utype)(a >> count));                                  \
    result((uint64_t)((a < b) | (ua < ub) << 1 | (a == b) << 2));           \
    if (b == 0)                                                             \
      return;                                                               \
    result((uint64_t)(utype)(ua / ub));                                     \
    result((uint64_t)(utype)(ua % ub));                                     \
    if (b == -1)                                                            \
      return;                                                               \
    result((uint64_t)(utype)(a / b));                                       \
    result((uint64_t)(utype)(a % b));                                       \
  }

INTEGER_OPERATIONS(integers8, int8_t, uint8_t, 8)
INTEGER_OPERATIONS(integers16, int16_t, uint16_t, 16)
INTEGER_OPERATIONS(integers32, int32_t, uint32_t, 32)
INTEGER_OPERATIONS(integers64, int64_t, uint64_t, 64)

static void widening(void) {
  volatile int16_t a = (int16_t)random_bits(), b = (int16_t)random_bits();
  volatile int32_t c = (int32_t)random_bits(), d = (int32_t)random_bits();
  result((uint64_t)((int32_t)a * b));
  result((uint64_t)(uint32_t)((uint32_t)(uint16_t)a * (uint16_t)b));
  result((uint64_t)((int64_t)c * d));
  result((uint64_t)(uint32_t)c * (uint32_t)d);
}

static int ordered_compare(double a, double b) {
  return (a < b) | (a <= b) << 1 | (a == b) << 2 | (a != b) << 3 | (a > b) << 4 | (a >= b) << 5;
}

static int ordered_compare_float(float a, float b) {
  return (a < b) | (a <= b) << 1 | (a == b) << 2 | (a != b) << 3 | (a > b) << 4 | (a >= b) << 5;
}

static Double last_double;
static Float last_float;

static void doubles(void) {
  const Double x = random_double(last_double), y = random_double(x);
  volatile double a = x.value, b = y.value;
  last_double = y;
#ifdef VERBOSE
  result(x.bits);
  result(y.bits);
#endif
  double_result(a + b);
  double_result(a - b);
  double_result(a * b);
  double_result(a / b);
  result((uint64_t)__builtin_isunordered(a, b));
  // Only less, less-or-equal and equality are right for a NaN.
  if (double_is_nan(x) || double_is_nan(y))
    result((uint64_t)((a < b) | (a <= b) << 1 | (a == b) << 2 | (a != b) << 3));
  else
    result((uint64_t)ordered_compare(a, b));
  float_result((float)a);
}

static void floats(void) {
  const Float x = random_float(last_float), y = random_float(x);
  volatile float a = x.value, b = y.value;
  last_float = y;
#ifdef VERBOSE
  result(x.bits);
  result(y.bits);
#endif
  float_result(a + b);
  float_result(a - b);
  float_result(a * b);
  float_result(a / b);
  result((uint64_t)__builtin_isunordered(a, b));
  if (float_is_nan(x) || float_is_nan(y))
    result((uint64_t)((a < b) | (a <= b) << 1 | (a == b) << 2 | (a != b) << 3));
  else
    result((uint64_t)ordered_compare_float(a, b));
  double_result((double)a);
}

static void conversions(void) {
  volatile int64_t i = (int64_t)random_bits();
  volatile int32_t l = (int32_t)random_bits();
  double_result((double)i);
  double_result((double)(uint64_t)i);
  double_result((double)l);
  double_result((double)(uint32_t)l);
  float_result((float)i);
  float_result((float)(uint64_t)i);
  float_result((float)l);
  float_result((float)(uint32_t)l);
  volatile double d = random_double(double_of(0x4000000000000000)).value;
  if (d > -9.2e18 && d < 9.2e18) {
    result((uint64_t)(int64_t)d);
    volatile float f = (float)d;
    result((uint64_t)(int64_t)f);
  }
  if (d >= 0 && d < 1.8e19) {
    result((uint64_t)d);
    volatile float f = (float)d;
    result((uint64_t)f);
  }
  if (d > -2147483648.0 && d < 2147483647.0)
    result((uint64_t)(int32_t)d);
  if (d >= 0 && d < 4294967295.0)
    result((uint32_t)d);
  volatile float f = random_float(float_of(0x40000000)).value;
  if (f > -2.1e9f && f < 2.1e9f)
    result((uint64_t)(int32_t)f);
  if (f >= 0 && f < 4.2e9f)
    result((uint32_t)f);
}

static const struct {
  const char *name;
  void (*run)(void);
} operations[] = {
  {"integers8", integers8}, {"integers16", integers16}, {"integers32", integers32},
  {"integers64", integers64}, {"widening", widening}, {"doubles", doubles},
  {"floats", floats}, {"conversions", conversions},
};

int main(void) {
  for (unsigned op = 0; op < sizeof operations / sizeof operations[0]; op++) {
    random_state = SEED + op;
    last_double.bits = 0;
    last_float.bits = 0;
    for (int block = 0; block < BLOCKS; block++) {
      fputs(operations[op].name, stdout);
      hash = 2166136261u;
      for (int i = 0; i < 32; i++) {
        operations[op].run();
#ifdef VERBOSE
        putchar('\n');
#endif
      }
      putchar(' ');
      show_hex(hash, 8);
      putchar('\n');
    }
  }
  return 0;
}
