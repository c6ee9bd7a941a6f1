// Text to an integer, in one width. Included with these defined:
//   NAME         the function
//   TYPE, UTYPE  the result's type, and the unsigned one of its width
//   LOWEST, HIGHEST  what an overflow gives; LOWEST is 0 for an unsigned type

#include <errno.h>
#include <limits.h>
#include <stdlib.h>

static int digit_of(char character) {
  if (character >= '0' && character <= '9')
    return character - '0';
  character |= 0x20;
  return character >= 'a' && character <= 'z' ? character - 'a' + 10 : 99;
}

// Moves behind a prefix that fits the base, and settles base 0.
static const char *skip_prefix(const char *text, int *base) {
  if (*text != '0') {
    if (*base == 0)
      *base = 10;
    return text;
  }
  if ((*base == 0 || *base == 16) && (text[1] | 0x20) == 'x' && digit_of(text[2]) < 16) {
    *base = 16;
    return text + 2;
  }
  if (*base == 0)
    *base = 8;
  return text;
}

TYPE NAME(const char *text, char **end, int base) {
  const char *start = text;
  while (*start == ' ' || (*start >= '\t' && *start <= '\r'))
    start++;
  const int negative = *start == '-';
  if (*start == '-' || *start == '+')
    start++;
  start = skip_prefix(start, &base);
  const UTYPE limit = LOWEST != 0 ? (UTYPE)HIGHEST + (UTYPE)negative : (UTYPE)HIGHEST;
  const UTYPE before_last = limit / (UTYPE)base;
  const int last = (int)(limit % (UTYPE)base);
  UTYPE value = 0;
  int overflow = 0;
  const char *digit = start;
  for (int next; (next = digit_of(*digit)) < base; digit++) {
    if (value > before_last || (value == before_last && next > last))
      overflow = 1;
    value = value * (UTYPE)base + (UTYPE)next;
  }
  if (end)
    *end = (char *)(digit == start ? text : digit);
  if (overflow) {
    errno = ERANGE;
    return negative && LOWEST != 0 ? (TYPE)LOWEST : (TYPE)HIGHEST;
  }
  return negative ? (TYPE)-value : (TYPE)value;
}
