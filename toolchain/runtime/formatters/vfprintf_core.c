// The formatter, compiled once for each formatter library:
//   FORMAT_LONG, FORMAT_LONG_LONG    conversions of `long`, and of `long long`
//   FORMAT_FLOAT, FORMAT_DOUBLE      floating-point numbers, in single or double precision
//   FORMAT_WIDTH                     field widths and precisions; without, they are read over

#include "formatter.h"

#include <stddef.h>
#include <stdint.h>

#if defined(FORMAT_FLOAT) || defined(FORMAT_DOUBLE)
#define FORMAT_REAL
#endif

#if defined(FORMAT_LONG_LONG)
typedef unsigned long long Magnitude;
typedef long long Integer;
#elif defined(FORMAT_LONG)
typedef unsigned long Magnitude;
typedef long Integer;
#else
typedef unsigned Magnitude;
typedef int Integer;
#endif

enum {
  FLAG_LEFT = 1,
  FLAG_PLUS = 2,
  FLAG_BLANK = 4,
  FLAG_ALTERNATE = 8,
  FLAG_ZERO = 16,
  FLAG_UPPER = 32,
};

enum { LENGTH_CHAR = -2, LENGTH_SHORT, LENGTH_INT, LENGTH_LONG, LENGTH_LONG_LONG };

typedef struct {
  void (*put)(char character, void *context);
  void *context;
  int count;
  unsigned char flags;
#ifdef FORMAT_WIDTH
  int width;
  int precision;  // -1 if none is given
#endif
} Formatter;

#ifdef FORMAT_WIDTH
#define PRECISION(formatter) ((formatter)->precision)
#else
#define PRECISION(formatter) (-1)
#endif

static void put(Formatter *f, char character) {
  f->put(character, f->context);
  f->count++;
}

static void put_text(Formatter *f, const char *text, int length) {
  while (length-- > 0)
    put(f, *text++);
}

static void put_repeated(Formatter *f, char character, int count) {
  while (count-- > 0)
    put(f, character);
}

// In front of a field of `length` characters that begins with `prefix`: blanks and the prefix,
// or the prefix and zeros. What is left of the width is to be filled behind the field.
static int begin_field(Formatter *f, const char *prefix, int prefix_length, int length) {
#ifdef FORMAT_WIDTH
  int padding = f->width - length;
  if (!(f->flags & (FLAG_LEFT | FLAG_ZERO))) {
    put_repeated(f, ' ', padding);
    padding = 0;
  }
  put_text(f, prefix, prefix_length);
  if (f->flags & FLAG_LEFT)
    return padding;
  put_repeated(f, '0', padding);
#else
  (void)length;
  put_text(f, prefix, prefix_length);
#endif
  return 0;
}

static void put_field(Formatter *f, const char *text, int length) {
  const int padding = begin_field(f, text, 0, length);
  put_text(f, text, length);
  put_repeated(f, ' ', padding);
}

static void put_string(Formatter *f, const char *text) {
  if (!text)
    text = "(null)";
  int length = 0;
  while (length != PRECISION(f) && text[length])
    length++;
  f->flags &= (unsigned char)~FLAG_ZERO;
  put_field(f, text, length);
}

static char sign_of(const Formatter *f, int negative) {
  return negative ? '-' : (f->flags & FLAG_PLUS) ? '+' : (f->flags & FLAG_BLANK) ? ' ' : 0;
}

static void put_integer(Formatter *f, Magnitude value, unsigned base, char sign) {
  char digits[sizeof(Magnitude) * 8 / 3 + 2];
  char *const end = digits + sizeof digits;
  char *digit = end;
  char prefix[2];
  int prefix_length = 0;
  if (sign)
    prefix[prefix_length++] = sign;
  if ((f->flags & FLAG_ALTERNATE) && base == 16 && value != 0) {
    prefix[prefix_length++] = '0';
    prefix[prefix_length++] = (f->flags & FLAG_UPPER) ? 'X' : 'x';
  }
  const char letters = (f->flags & FLAG_UPPER) ? 'A' - 10 : 'a' - 10;
  for (; value != 0; value /= base) {
    const char remainder = (char)(value % base);
    *--digit = (char)(remainder + (remainder < 10 ? '0' : letters));
  }
  int zeros = (PRECISION(f) < 0 ? 1 : PRECISION(f)) - (int)(end - digit);
  if (zeros < 0)
    zeros = 0;
  if ((f->flags & FLAG_ALTERNATE) && base == 8 && zeros == 0)
    zeros = 1;
  if (PRECISION(f) >= 0)
    f->flags &= (unsigned char)~FLAG_ZERO;
  const int length = (int)(end - digit);
  const int padding = begin_field(f, prefix, prefix_length, prefix_length + zeros + length);
  put_repeated(f, '0', zeros);
  put_text(f, digit, length);
  put_repeated(f, ' ', padding);
}

#ifdef FORMAT_REAL
#include "vfprintf_real.h"
#endif

// Takes an integer of the given length; what exceeds the widest that is supported is dropped.
static Integer take_signed(va_list *arguments, int length) {
  if (length >= LENGTH_LONG_LONG)
    return (Integer)va_arg(*arguments, long long);
  if (length == LENGTH_LONG)
    return (Integer)va_arg(*arguments, long);
  const int value = va_arg(*arguments, int);
  return length == LENGTH_CHAR ? (signed char)value : length == LENGTH_SHORT ? (short)value : value;
}

static Magnitude take_unsigned(va_list *arguments, int length) {
  if (length >= LENGTH_LONG_LONG)
    return (Magnitude)va_arg(*arguments, unsigned long long);
  if (length == LENGTH_LONG)
    return (Magnitude)va_arg(*arguments, unsigned long);
  const unsigned value = va_arg(*arguments, unsigned);
  return length == LENGTH_CHAR    ? (unsigned char)value
         : length == LENGTH_SHORT ? (unsigned short)value
                                  : value;
}

static void store_count(void *target, int length, int count) {
  switch (length) {
    case LENGTH_CHAR: *(signed char *)target = (signed char)count; break;
    case LENGTH_SHORT: *(short *)target = (short)count; break;
    case LENGTH_LONG: *(long *)target = count; break;
    case LENGTH_LONG_LONG: *(long long *)target = count; break;
    default: *(int *)target = count; break;
  }
}

static const char *parse_flags(Formatter *f, const char *format) {
  static const char characters[] = "-+ #0";
  for (;; format++) {
    int i = 0;
    while (characters[i] && characters[i] != *format)
      i++;
    if (!characters[i])
      return format;
    f->flags |= (unsigned char)(1 << i);
  }
}

// A number, or `*` for an argument.
static const char *parse_number(const char *format, va_list *arguments, int *number) {
  if (*format == '*') {
    *number = va_arg(*arguments, int);
    return format + 1;
  }
  *number = 0;
  for (; *format >= '0' && *format <= '9'; format++)
    *number = *number * 10 + (*format - '0');
  return format;
}

static const char *parse_width(Formatter *f, const char *format, va_list *arguments) {
  int width;
  int precision = -1;
  format = parse_number(format, arguments, &width);
  if (*format == '.')
    format = parse_number(format + 1, arguments, &precision);
#ifdef FORMAT_WIDTH
  if (width < 0) {
    f->flags |= FLAG_LEFT;
    width = -width;
  }
  f->width = width;
  f->precision = precision < 0 ? -1 : precision;
#else
  (void)f;
#endif
  return format;
}

static const char *parse_length(const char *format, int *length) {
  *length = LENGTH_INT;
  for (;; format++) {
    switch (*format) {
      case 'h': --*length; break;
      case 'l': ++*length; break;
      case 'j': case 'q': *length = LENGTH_LONG_LONG; break;
      case 't': case 'z': *length = sizeof(size_t) == sizeof(int) ? LENGTH_INT : LENGTH_LONG; break;
      case 'L': break;
      default: return format;
    }
  }
}

static void convert(Formatter *f, char conversion, int length, va_list *arguments) {
  unsigned base = 10;
  switch (conversion) {
    case 'd': case 'i': {
      const Integer value = take_signed(arguments, length);
      put_integer(f, value < 0 ? -(Magnitude)value : (Magnitude)value, 10, sign_of(f, value < 0));
      break;
    }
    case 'X': f->flags |= FLAG_UPPER;  // fall through
    case 'x': base = 16; goto unsigned_integer;
    case 'o': base = 8; goto unsigned_integer;
    case 'u':
    unsigned_integer:
      put_integer(f, take_unsigned(arguments, length), base, 0);
      break;
    case 'p':
      f->flags |= FLAG_ALTERNATE;
      put_integer(f, (Magnitude)(uintptr_t)va_arg(*arguments, void *), 16, 0);
      break;
    case 'c': {
      const char character = (char)va_arg(*arguments, int);
      f->flags &= (unsigned char)~FLAG_ZERO;
      put_field(f, &character, 1);
      break;
    }
    case 's': put_string(f, va_arg(*arguments, const char *)); break;
    case 'n': store_count(va_arg(*arguments, void *), length, f->count); break;
#ifdef FORMAT_REAL
    case 'F': case 'E': case 'G': case 'A':
      f->flags |= FLAG_UPPER;
      conversion = (char)(conversion + ('a' - 'A'));  // fall through
    case 'f': case 'e': case 'g': case 'a':
      put_real(f, conversion, va_arg(*arguments, double));
      break;
#else
    case 'f': case 'F': case 'e': case 'E': case 'g': case 'G': case 'a': case 'A':
      // Not shown, but what follows stays in its place.
      (void)va_arg(*arguments, double);  // fall through
#endif
    default: put(f, conversion); break;
  }
}

int __vfprintf_core(void (*sink)(char, void *), void *context, const char *format,
                    va_list arguments) {
  Formatter f;
  va_list rest;
  f.put = sink;
  f.context = context;
  f.count = 0;
  va_copy(rest, arguments);
  for (; *format; format++) {
    if (*format != '%') {
      put(&f, *format);
      continue;
    }
    int length;
    f.flags = 0;
    format = parse_flags(&f, format + 1);
    format = parse_width(&f, format, &rest);
    format = parse_length(format, &length);
    if (!*format)
      break;
    convert(&f, *format, length, &rest);
  }
  va_end(rest);
  return f.count;
}
