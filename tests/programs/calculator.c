// A parser by recursive descent, with errors by longjmp.
#include <ctype.h>
#include <inttypes.h>
#include <setjmp.h>
#include <stdio.h>
#include <stdlib.h>

static const char *next;
static jmp_buf failure;

static int32_t expression(void);

static void expect(char character) {
  if (*next++ != character)
    longjmp(failure, character);
}

static int32_t primary(void) {
  while (*next == ' ')
    next++;
  if (*next == '-') {
    next++;
    return -primary();
  }
  if (*next == '(') {
    next++;
    const int32_t value = expression();
    expect(')');
    return value;
  }
  if (!isdigit((unsigned char)*next))
    longjmp(failure, 1);
  char *end;
  const long value = strtol(next, &end, 0);
  next = end;
  return (int32_t)value;
}

static int32_t term(void) {
  int32_t value = primary();
  for (;;) {
    while (*next == ' ')
      next++;
    if (*next == '*') {
      next++;
      value *= primary();
    } else if (*next == '/' || *next == '%') {
      const char sign = *next++;
      const int32_t divisor = primary();
      if (divisor == 0)
        longjmp(failure, 2);
      value = sign == '/' ? value / divisor : value % divisor;
    } else {
      return value;
    }
  }
}

static int32_t expression(void) {
  int32_t value = term();
  while (*next == '+' || *next == '-') {
    if (*next++ == '+')
      value += term();
    else
      value -= term();
  }
  return value;
}

int main(void) {
  static const char *const lines[] = {"1+2*3", "(1+2)*3", "-(4-10)*7%5", "100000*20000/7", "1/0",
                                      "2*(3", "abc", "0x10 + 010", "((((5))))-(-(-3))", "7 - 2 - 1"};
  for (unsigned i = 0; i < sizeof lines / sizeof lines[0]; i++) {
    next = lines[i];
    const int error = setjmp(failure);
    if (error == 0)
      printf("%s = %" PRId32 "\n", lines[i], expression());
    else
      printf("%s: error %d\n", lines[i], error);
  }
  return 0;
}
