// The scanner and the text-to-number conversions, compiled for the host, against the host's
// own. Prints each difference; the exit status tells whether there was one.

#include <stdlib.h>

#include "formatter.h"

#include <math.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

// The library's, renamed where they are compiled.
double our_strtod(const char *text, char **end);
float our_strtof(const char *text, char **end);

static int differences;

static uint64_t random64(void) {
  static uint64_t state = 88172645463325252u;
  state ^= state << 13;
  state ^= state >> 7;
  return state ^= state << 17;
}

static void check_number(const char *text) {
  char *our_end;
  char *their_end;
  const double ours = our_strtod(text, &our_end);
  const double theirs = strtod(text, &their_end);
  if ((memcmp(&ours, &theirs, sizeof ours) != 0 && !(isnan(ours) && isnan(theirs))) ||
      our_end != their_end) {
    if (differences++ < 30)
      printf("%s: ours %a, %d, theirs %a, %d\n", text, ours, (int)(our_end - text), theirs,
             (int)(their_end - text));
  }
  const float our_float = our_strtof(text, &our_end);
  const float their_float = strtof(text, &their_end);
  if ((memcmp(&our_float, &their_float, sizeof our_float) != 0 &&
       !(isnan(our_float) && isnan(their_float))) || our_end != their_end) {
    if (differences++ < 30)
      printf("%s: ours %a, %d, theirs %a, %d, as float\n", text, our_float,
             (int)(our_end - text), their_float, (int)(their_end - text));
  }
}

static void check_numbers(int rounds) {
  static const char *const texts[] = {
    "0", "-0", "1", "1.", ".5", ".", "-", "+1e5", "1e", "1e+", "1e-", "0x", "0x1", "0x1p4",
    "0x1.8p-1074", "0x.8p1", "0x1.fffffffffffff8p1023", "0x1.fffffffffffff7p1023", "inf",
    "-INFINITY", "infinit", "nan", "nan(123)", "nan(1-)", "1e400", "-1e-400", "1e-324", "5e-324",
    "2.4703282292062327e-324", "2.4703282292062328e-324", "2.2250738585072011e-308",
    "2.2250738585072014e-308", "1.7976931348623157e308", "1.7976931348623158e308",
    "1.7976931348623159e308", "9007199254740993", "9007199254740992.999999999999999999999",
    "9007199254740993.0000000000000000000000000000001", "123456789012345678901234567890",
    "0.000000000000000000000000000000000000000000001", "3.4028235677973366e38", "  12x", "x",
    "1e99999", "1e-99999", "00000000000000000000001.5", "7.0064923216240854e-46", "16777217",
    "16777217.0000000000000000000000000001", "33554433", "1.17549435e-38", "0e500", "0.0e-500",
    "100000000000000000000000000000000000000000000000000000000000000000000000000e-74",
  };
  for (unsigned i = 0; i < sizeof texts / sizeof texts[0]; i++)
    check_number(texts[i]);
  char text[1200];
  while (rounds-- > 0) {
    union { uint64_t bits; double value; float single; } random;
    random.bits = random64();
    switch (random64() % 6) {
      case 0: sprintf(text, "%.17g", random.value); break;
      case 1: sprintf(text, "%.*e", (int)(random64() % 30), random.value); break;
      case 2: sprintf(text, "%.9g", (double)random.single); break;
      case 3: sprintf(text, "%lld.%llue%d", (long long)(random64() >> (random64() & 63)),
                      (unsigned long long)(random64() >> (random64() & 63)),
                      (int)(random64() % 40) - 20); break;
      case 4: sprintf(text, "%a", random.value); break;
      default: {
        // Halfway between two neighbours, exactly, and a little beside it.
        random.bits = (random.bits & 0x000fffffffffffff) | ((960 + random64() % 128) << 52);
        const double next = nextafter(random.value, INFINITY);
        sprintf(text, "%.180Lf", ((long double)random.value + (long double)next) / 2);
        if (random64() & 1)
          strcat(text, "1");
        break;
      }
    }
    check_number(text);
  }
  char digits[1100];
  sprintf(digits, "%.1074f", 5e-324);
  check_number(digits);
  strcat(digits, "1");
  check_number(digits);
}

// ---- Formats

typedef struct {
  const char *text;
  int position;
} Input;

static int get(void *context) {
  Input *input = context;
  return input->text[input->position] ? (unsigned char)input->text[input->position++] : -1;
}

static void unget(int character, void *context) {
  (void)character;
  ((Input *)context)->position--;
}

static int scan(const char *text, const char *format, ...) {
  Input input = {text, 0};
  va_list arguments;
  va_start(arguments, format);
  const int items = __vfscanf_core(get, unget, &input, format, arguments);
  va_end(arguments);
  return items;
}

typedef struct {
  union { char text[40]; long long integer; int small; double real; float single; } item[4];
} Items;

static void check_scan(const char *text, const char *format) {
  Items ours, theirs;
  memset(&ours, 'q', sizeof ours);
  theirs = ours;
  const int our_count = scan(text, format, &ours.item[0], &ours.item[1], &ours.item[2], &ours.item[3]);
  const int their_count = sscanf(text, format, &theirs.item[0], &theirs.item[1], &theirs.item[2], &theirs.item[3]);
  if (our_count != their_count || memcmp(&ours, &theirs, sizeof ours) != 0) {
    differences++;
    printf("\"%s\" by \"%s\": ours %d, theirs %d\n", text, format, our_count, their_count);
  }
}

static void check_formats(void) {
  static const char *const cases[][2] = {
    {"12 -34", "%d%d"}, {"12,34", "%d,%d"}, {"12;34", "%d,%d"}, {"", "%d"}, {"   ", "%d"},
    {"x", "%d"}, {"0x1F 017 19", "%i%i%i"}, {"ff 0xFF", "%x%x"}, {"777", "%2o%o"},
    {"123456", "%2d%3d%d"}, {"-5", "%u"}, {"hello world", "%s%s"}, {"hello", "%3s%s"},
    {"abc", "%c%c%c"}, {"abcdef", "%4c"}, {" a", "%c%c"}, {" a", " %c"}, {"12 34 56", "%d%*d%d"},
    {"3.25 -1e3 .5", "%f%lf%f"}, {"inf nan", "%f%lf"}, {"0x1.8p3", "%lf"},
    {"5 items", "%d items%n"}, {"5 item", "%d items%n"}, {"50%", "%d%%%n"}, {"a1b2", "a%db%d"},
    {"123456789012", "%lld"}, {"300 70000", "%hhd%hd"}, {"abc123", "%[a-c]%d"},
    {"abc]x", "%[]abc]%c"}, {"key=value", "%[^=]=%s"}, {"a-b", "%[a-]%c"}, {"xyz", "%[abc]"},
    {"1 2", "%d %d"}, {"+7 -0", "%d%d"}, {"9999", "%2d%*c%d"}, {"1e5x", "%lf%c"}, {"-.5e-2", "%f"},
    {"12", "%5d%n"}, {"tail", "%4s%n"}, {"99 bottles", "%d%s"}, {".", "%f"}, {"+", "%d"},
  };
  for (unsigned i = 0; i < sizeof cases / sizeof cases[0]; i++)
    check_scan(cases[i][0], cases[i][1]);
}

int main(void) {
  check_formats();
  check_numbers(300000);
  printf("%d differences\n", differences);
  return differences != 0;
}
