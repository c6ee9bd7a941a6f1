// The formatter, compiled for the host, against the host's own on many formats and values.
// Prints each difference; the exit status tells whether there was one.

#include "formatter.h"

#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

typedef struct {
  char text[4096];
  int length;
} Output;

static void put(char character, void *context) {
  Output *output = context;
  output->text[output->length++] = character;
}

static int differences;

static int format(Output *output, const char *text, ...) {
  va_list arguments;
  va_start(arguments, text);
  output->length = 0;
  const int count = __vfprintf_core(put, output, text, arguments);
  output->text[output->length] = 0;
  va_end(arguments);
  return count;
}

// The host's library drops the zeros of %#g when rounding makes a number a power of ten.
static int host_is_wrong(const char *text) {
  return strstr(text, ".e") || strstr(text, ".E");
}

#define CHECK(...)                                                                \
  do {                                                                            \
    static Output ours;                                                           \
    static char theirs[4096];                                                     \
    const int our_count = format(&ours, __VA_ARGS__);                             \
    const int their_count = snprintf(theirs, sizeof theirs, __VA_ARGS__);         \
    if ((our_count != their_count || strcmp(ours.text, theirs) != 0) &&           \
        !host_is_wrong(theirs)) {                                                 \
      if (differences++ < 40)                                                     \
        printf("ours   %s\ntheirs %s\n", ours.text, theirs);                      \
    }                                                                             \
  } while (0)

static uint64_t random64(void) {
  static uint64_t state = 88172645463325252u;
  state ^= state << 13;
  state ^= state >> 7;
  return state ^= state << 17;
}

static const char *const flags[] = {"", "-", "+", " ", "#", "0", "-#", "+0", " 0", "#0", "+-", "#+0 -"};
static const char *const sizes[] = {"", "1", "5", "12", "30", ".", ".0", ".1", ".5", ".12", "8.3",
                                    "20.10", "3.9", ".17", "25.20"};

#define COUNT(array) (sizeof(array) / sizeof(array)[0])

static void build(char *text, const char *length, char conversion, uint64_t choice) {
  sprintf(text, "<%%%s%s%s%c>", flags[choice % COUNT(flags)], sizes[choice / 64 % COUNT(sizes)],
          length, conversion);
}

static void check_integers(int rounds) {
  static const char *const lengths[] = {"hh", "h", "", "l", "ll", "z", "j", "t"};
  char text[64];
  while (rounds-- > 0) {
    const uint64_t value = random64() >> (random64() & 63);
    const uint64_t choice = random64();
    build(text, lengths[choice >> 40 & 7], "diuxXo"[(choice >> 50) % 6], choice);
    CHECK(text, value);
  }
  for (uint64_t choice = 0; choice < 64 * 15; choice++) {
    build(text, "", 's', choice);
    CHECK(text, "text");
    CHECK(text, "");
    build(text, "", 'c', choice);
    if (!strchr(text, '.'))
      CHECK(text, 'x');
    build(text, "", 'd', choice);
    CHECK(text, 0);
    build(text, "", 'o', choice);
    CHECK(text, 0);
    build(text, "", 'X', choice);
    CHECK(text, 0);
  }
  CHECK("%*d|%-*d|%.*d|%*.*f", 5, 1, 5, 2, 3, 4, -9, 2, 1.5);
  CHECK("100%% %5d%c%s %p", 7, 'a', "b", (void *)0x1234);
}

static double random_double(void) {
  static const double values[] = {0, 1, 0.5, 1.5, 2.5, 9.5, 0.05, 9.995, 99999.5, 999999.5, 1e5,
                                  1e6, 1e-4, 1e-5, 123456789, 1e22, 1e23, 5e-324, 1.7976931348623157e308,
                                  0.1, 0.3, 100, 1e15, 1e16, 1e17, 0.000123456, 1.0 / 3, 1 / 0.0};
  union { uint64_t bits; double value; } random;
  random.bits = random64();
  switch (random64() & 3) {
    case 0: random.value = values[random64() % COUNT(values)]; break;
    case 1: random.value = (double)(random64() % 100000000) / 1000.0; break;
    case 2: random.bits = (random.bits & ~((uint64_t)0x7ff << 52)) | ((960 + random64() % 128) << 52); break;
  }
#ifdef SINGLE
  // What the single-precision formatter has to show is the value as a float.
  random.value = (float)random.value;
#endif
  if (random.value != random.value)
    random.value = 0;
  return random64() & 1 ? random.value : -random.value;
}

static void check_reals(int rounds) {
  char text[64];
  while (rounds-- > 0) {
    const uint64_t choice = random64();
    const double value = random_double();
    build(text, "", "fFeEgG"[(choice >> 50) % 6], choice);
    CHECK(text, value);
#ifndef SINGLE
    build(text, "", "aA"[(choice >> 50) % 2], choice);
    CHECK(text, value);
#endif
  }
#ifndef SINGLE
  CHECK("%.1100f %.340f %.800e", 5e-324, 1e30, (double)0.1f);
#endif
}

int main(void) {
  check_integers(200000);
  check_reals(200000);
  printf("%d differences\n", differences);
  return differences != 0;
}
