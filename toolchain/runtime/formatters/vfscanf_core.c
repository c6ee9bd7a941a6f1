// The scanner, compiled once for each scanner library:
//   FORMAT_LONG, FORMAT_LONG_LONG    the widest integer that is read
//   FORMAT_FLOAT, FORMAT_DOUBLE      floating-point numbers, read in single or double precision
//   FORMAT_CLASSES                   character classes, %[...]

#include "formatter.h"

#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>

#if defined(FORMAT_LONG_LONG)
typedef unsigned long long Magnitude;
#elif defined(FORMAT_LONG)
typedef unsigned long Magnitude;
#else
typedef unsigned Magnitude;
#endif

enum { LENGTH_CHAR = -2, LENGTH_SHORT, LENGTH_INT, LENGTH_LONG, LENGTH_LONG_LONG };

typedef struct {
  int (*get)(void *context);
  void (*unget)(int character, void *context);
  void *context;
  int count;   // characters read
  int width;   // characters that the current item may still take
  int length;
  char store;  // 0 after `*`
  char ended;  // the input ended in front of an item
} Scanner;

static int get(Scanner *s) {
  const int character = s->get(s->context);
  if (character >= 0)
    s->count++;
  return character;
}

static void unget(Scanner *s, int character) {
  if (character < 0)
    return;
  s->count--;
  s->unget(character, s->context);
}

// The next character of an item, or -1 at its width.
static int take(Scanner *s) {
  if (s->width <= 0)
    return -1;
  const int character = get(s);
  if (character >= 0)
    s->width--;
  return character;
}

static int is_blank(int character) {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

static void skip_blanks(Scanner *s) {
  int character;
  do
    character = get(s);
  while (is_blank(character));
  unget(s, character);
}

static int digit_value(int character) {
  if (character >= '0' && character <= '9')
    return character - '0';
  character |= 0x20;
  return character >= 'a' && character <= 'f' ? character - 'a' + 10 : 99;
}

static void store_integer(Scanner *s, Magnitude value, va_list *arguments) {
  if (!s->store)
    return;
  void *target = va_arg(*arguments, void *);
  switch (s->length) {
    case LENGTH_CHAR: *(char *)target = (char)value; break;
    case LENGTH_SHORT: *(short *)target = (short)value; break;
    case LENGTH_INT: *(int *)target = (int)value; break;
#if defined(FORMAT_LONG) || defined(FORMAT_LONG_LONG)
    case LENGTH_LONG: *(long *)target = (long)value; break;
    default: *(long long *)target = (long long)value; break;
#else
    case LENGTH_LONG: *(long *)target = (int)value; break;
    default: *(long long *)target = (int)value; break;
#endif
  }
}

// Base 0 takes it from a prefix.
static int scan_integer(Scanner *s, unsigned base, va_list *arguments) {
  Magnitude value = 0;
  int any = 0;
  int character = take(s);
  const int negative = character == '-';
  if (character == '-' || character == '+')
    character = take(s);
  if (character == '0' && (base == 0 || base == 16)) {
    any = 1;
    character = take(s);
    if ((character | 0x20) == 'x' && character >= 0) {
      base = 16;
      any = 0;
      character = take(s);
    } else if (base == 0) {
      base = 8;
    }
  } else if (base == 0) {
    base = 10;
  }
  for (; (unsigned)digit_value(character) < base; character = take(s)) {
    value = value * base + (unsigned)digit_value(character);
    any = 1;
  }
  unget(s, character);
  if (any)
    store_integer(s, negative ? -value : value, arguments);
  return any;
}

static int scan_characters(Scanner *s, va_list *arguments) {
  char *target = s->store ? va_arg(*arguments, char *) : NULL;
  for (int left = s->width; left > 0; left--) {
    const int character = get(s);
    if (character < 0)
      return 0;
    if (target)
      *target++ = (char)character;
  }
  return 1;
}

#ifdef FORMAT_CLASSES
// Whether the class between [ and ] that `set` begins with, behind the [, holds the character.
static int in_class(const char *set, const char *end, int character) {
  const int inverted = *set == '^';
  set += inverted;
  for (const char *member = set; member < end; member++) {
    if (member + 2 < end && member[1] == '-') {
      if (character >= (unsigned char)member[0] && character <= (unsigned char)member[2])
        return !inverted;
      member += 2;
    } else if (character == (unsigned char)*member) {
      return !inverted;
    }
  }
  return inverted;
}

static const char *class_end(const char *set) {
  if (*set == '^')
    set++;
  if (*set == ']')
    set++;
  while (*set && *set != ']')
    set++;
  return set;
}
#endif

// A word without blanks, or with a class the characters in it.
static int scan_word(Scanner *s, const char *set, const char *end, va_list *arguments) {
  char *target = s->store ? va_arg(*arguments, char *) : NULL;
  int any = 0;
  int character;
  for (;;) {
    character = take(s);
    if (character < 0)
      break;
#ifdef FORMAT_CLASSES
    if (set ? !in_class(set, end, character) : is_blank(character))
      break;
#else
    (void)set;
    (void)end;
    if (is_blank(character))
      break;
#endif
    if (target)
      *target++ = (char)character;
    any = 1;
  }
  unget(s, character);
  if (any && target)
    *target = 0;
  return any;
}

#if defined(FORMAT_FLOAT) || defined(FORMAT_DOUBLE)

// Digits beyond what the text holds are read over: it has room for more than can matter to a
// number that people write.
enum { REAL_TEXT = 64 };

typedef struct {
  char text[REAL_TEXT];
  int length;
  int character;  // the next one, not yet in the text
} RealText;

static void accept(Scanner *s, RealText *real) {
  if (real->length < REAL_TEXT - 1)
    real->text[real->length++] = (char)real->character;
  real->character = take(s);
}

static int accept_one_of(Scanner *s, RealText *real, const char *characters) {
  for (; *characters; characters++) {
    if (real->character >= 0 && (real->character | 0x20) == (*characters | 0x20)) {
      accept(s, real);
      return 1;
    }
  }
  return 0;
}

static int accept_digits(Scanner *s, RealText *real, int base) {
  int any = 0;
  for (; digit_value(real->character) < base; any = 1)
    accept(s, real);
  return any;
}

static int accept_word(Scanner *s, RealText *real, const char *word) {
  char letter[2] = {0, 0};
  for (; *word; word++) {
    letter[0] = *word;
    if (!accept_one_of(s, real, letter))
      return 0;
  }
  return 1;
}

static int accept_number(Scanner *s, RealText *real) {
  int base = 10;
  int any = 0;
  if (real->character == '0') {
    accept(s, real);
    any = 1;
    if (accept_one_of(s, real, "x")) {
      base = 16;
      any = 0;
    }
  }
  any |= accept_digits(s, real, base);
  if (real->character == '.') {
    accept(s, real);
    any |= accept_digits(s, real, base);
  }
  if (any && accept_one_of(s, real, base == 16 ? "p" : "e")) {
    if (real->character == '+' || real->character == '-')
      accept(s, real);
    any = accept_digits(s, real, 10);
  }
  return any;
}

static int accept_real(Scanner *s, RealText *real) {
  if (real->character == '+' || real->character == '-')
    accept(s, real);
  if ((real->character | 0x20) == 'n')
    return accept_word(s, real, "nan");
  if ((real->character | 0x20) != 'i')
    return accept_number(s, real);
  return accept_word(s, real, "inf") &&
         ((real->character | 0x20) != 'i' || accept_word(s, real, "inity"));
}

static int scan_real(Scanner *s, va_list *arguments) {
  RealText real;
  real.length = 0;
  real.character = take(s);
  const int valid = accept_real(s, &real);
  unget(s, real.character);
  if (!valid)
    return 0;
  if (!s->store)
    return 1;
  real.text[real.length] = 0;
  if (s->length == LENGTH_INT) {
    *va_arg(*arguments, float *) = strtof(real.text, NULL);
    return 1;
  }
#ifdef FORMAT_DOUBLE
  *va_arg(*arguments, double *) = strtod(real.text, NULL);
#else
  *va_arg(*arguments, double *) = strtof(real.text, NULL);
#endif
  return 1;
}
#endif

static const char *parse_length(const char *format, int *length) {
  *length = LENGTH_INT;
  for (;; format++) {
    switch (*format) {
      case 'h': --*length; break;
      case 'l': ++*length; break;
      case 'L': *length = LENGTH_LONG; break;
      case 'j': case 'q': *length = LENGTH_LONG_LONG; break;
      case 't': case 'z': *length = sizeof(size_t) == sizeof(int) ? LENGTH_INT : LENGTH_LONG; break;
      default: return format;
    }
  }
}

static const char *parse_width(Scanner *s, const char *format) {
  s->store = *format != '*';
  if (!s->store)
    format++;
  s->width = 0;
  for (; *format >= '0' && *format <= '9'; format++)
    s->width = s->width * 10 + (*format - '0');
  return format;
}

// Scans one item; `format` is at the conversion and moves to its last character.
static int scan_item(Scanner *s, const char **format, va_list *arguments) {
  const char conversion = **format;
  if (conversion != 'c' && conversion != '[')
    skip_blanks(s);
  const int first = get(s);
  if (first < 0) {
    s->ended = 1;
    return 0;
  }
  unget(s, first);
  if (s->width == 0)
    s->width = conversion == 'c' ? 1 : INT16_MAX;
  switch (conversion) {
    case 'd': case 'u': return scan_integer(s, 10, arguments);
    case 'i': return scan_integer(s, 0, arguments);
    case 'o': return scan_integer(s, 8, arguments);
    case 'p': if (sizeof(void *) > sizeof(int)) s->length = LENGTH_LONG;  // fall through
    case 'x': case 'X': return scan_integer(s, 16, arguments);
    case 'c': return scan_characters(s, arguments);
    case 's': return scan_word(s, NULL, NULL, arguments);
#ifdef FORMAT_CLASSES
    case '[': {
      const char *set = *format + 1;
      *format = class_end(set);
      return scan_word(s, set, *format, arguments);
    }
#endif
#if defined(FORMAT_FLOAT) || defined(FORMAT_DOUBLE)
    case 'a': case 'A': case 'e': case 'E': case 'f': case 'F': case 'g': case 'G':
      return scan_real(s, arguments);
#endif
    default: return 0;
  }
}

// Ordinary text of a format must stand in the input as it is.
static int match(Scanner *s, char expected) {
  const int character = get(s);
  if (character == (unsigned char)expected)
    return 1;
  s->ended = character < 0;
  unget(s, character);
  return 0;
}

int __vfscanf_core(int (*source)(void *), void (*give_back)(int, void *), void *context,
                   const char *format, va_list arguments) {
  Scanner s = {source, give_back, context, 0, 0, 0, 0, 0};
  int items = 0;
  va_list rest;
  va_copy(rest, arguments);
  for (; *format; format++) {
    if (is_blank(*format)) {
      skip_blanks(&s);
      continue;
    }
    if (*format != '%') {
      if (!match(&s, *format))
        break;
      continue;
    }
    format = parse_length(parse_width(&s, format + 1), &s.length);
    if (*format == 'n') {
      store_integer(&s, (Magnitude)s.count, &rest);
      continue;
    }
    if (*format == '%') {
      skip_blanks(&s);
      if (!match(&s, '%'))
        break;
      continue;
    }
    if (!*format || !scan_item(&s, &format, &rest))
      break;
    items += s.store;
  }
  va_end(rest);
  return items == 0 && s.ended ? -1 : items;
}
