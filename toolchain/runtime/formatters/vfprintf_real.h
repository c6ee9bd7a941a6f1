// The floating-point part of vfprintf_core.c, which includes it: exact decimal expansion of
// the number, rounded once.

#include "decimal.h"

#ifdef FORMAT_DOUBLE
typedef double Real;
typedef uint64_t RealBits;
enum { FRACTION_BITS = 52, EXPONENT_BIAS = 1023, EXPONENT_MAX = 2047 };
#else
typedef float Real;
typedef uint32_t RealBits;
enum { FRACTION_BITS = 23, EXPONENT_BIAS = 127, EXPONENT_MAX = 255 };
#endif

// A finite number: significand * 2^exponent.
typedef struct {
  RealBits significand;
  int exponent;
  char negative;
  char infinite;
  char nan;
} Parts;

static Parts take_apart(double argument) {
  union {
    Real value;
    RealBits bits;
  } real;
  real.value = (Real)argument;
  const RealBits fraction = real.bits & (((RealBits)1 << FRACTION_BITS) - 1);
  const int field = (int)(real.bits >> FRACTION_BITS) & EXPONENT_MAX;
  Parts parts;
  parts.negative = (char)(real.bits >> (sizeof(RealBits) * 8 - 1));
  parts.infinite = field == EXPONENT_MAX && fraction == 0;
  parts.nan = field == EXPONENT_MAX && fraction != 0;
  parts.significand = field == 0 ? fraction : fraction | (RealBits)1 << FRACTION_BITS;
  parts.exponent = (field == 0 ? 1 : field) - EXPONENT_BIAS - FRACTION_BITS;
  return parts;
}

static void put_special(Formatter *f, const Parts *parts) {
  static const char names[] = "infnanINFNAN";
  const char sign = sign_of(f, parts->negative);
  const char *name = names + (parts->nan ? 3 : 0) + ((f->flags & FLAG_UPPER) ? 6 : 0);
  f->flags &= (unsigned char)~FLAG_ZERO;
  const int padding = begin_field(f, &sign, sign != 0, 3 + (sign != 0));
  put_text(f, name, 3);
  put_repeated(f, ' ', padding);
}

static void load_decimal(Decimal *number, const Parts *parts) {
  for (int word = sizeof(RealBits) / 2; word-- > 0;)
    __decimal_shift_left(number, 16, (uint16_t)(parts->significand >> (16 * word)));
  for (int left = parts->exponent; left > 0; left -= 16)
    __decimal_shift_left(number, left < 16 ? left : 16, 0);
  for (int right = -parts->exponent; right > 0; right -= 4)
    __decimal_shift_right(number, right < 4 ? right : 4);
}

static void put_exponent(Formatter *f, char letter, int exponent, int least_digits) {
  char digits[5];
  char *digit = digits + sizeof digits;
  put(f, letter);
  put(f, exponent < 0 ? '-' : '+');
  for (exponent = exponent < 0 ? -exponent : exponent; exponent != 0; exponent /= 10)
    *--digit = (char)('0' + exponent % 10);
  while (digits + sizeof digits - digit < least_digits)
    *--digit = '0';
  put_text(f, digit, (int)(digits + sizeof digits - digit));
}

// `highest` is the place of the first digit; with `scientific` an exponent follows.
static void put_decimal(Formatter *f, const Decimal *number, char sign, int highest,
                        int precision, int scientific) {
  const int exponent = highest;
  const int point = precision > 0 || (f->flags & FLAG_ALTERNATE);
  const int shift = scientific ? exponent : 0;
  const int whole = scientific || highest < 0 ? 1 : highest + 1;
  int length = (sign != 0) + whole + point + precision;
  if (scientific)
    length += exponent > 99 || exponent < -99 ? 5 : 4;
  const int padding = begin_field(f, &sign, sign != 0, length);
  for (int place = whole - 1; place >= -precision; place--) {
    if (place == -1)
      put(f, '.');
    put(f, (char)('0' + __decimal_digit(number, place + shift)));
  }
  if (point && precision == 0)
    put(f, '.');
  if (scientific)
    put_exponent(f, (f->flags & FLAG_UPPER) ? 'E' : 'e', exponent, 2);
  put_repeated(f, ' ', padding);
}

static void put_rounded(Formatter *f, Decimal *number, char sign, char conversion) {
  int precision = PRECISION(f) < 0 ? 6 : PRECISION(f);
  if (conversion == 'f') {
    __decimal_round(number, -precision);
    put_decimal(f, number, sign, __decimal_exponent(number), precision, 0);
    return;
  }
  if (conversion == 'g' && precision > 0)
    precision--;
  __decimal_round(number, __decimal_exponent(number) - precision);
  const int exponent = __decimal_exponent(number);
  int scientific = 1;
  if (conversion == 'g') {
    scientific = exponent < -4 || exponent > precision;
    if (!scientific)
      precision -= exponent;
    const int shift = scientific ? exponent : 0;
    if (!(f->flags & FLAG_ALTERNATE)) {
      while (precision > 0 && __decimal_digit(number, shift - precision) == 0)
        precision--;
    }
  }
  put_decimal(f, number, sign, exponent, precision, scientific);
}

// Room in limbs for the whole part and for the fraction of any number with this exponent.
static int whole_limbs(int exponent) {
  return (exponent > 0 ? exponent / 13 : 0) + FRACTION_BITS / 13 + 3;
}

static int fraction_limbs(int exponent) {
  return exponent < 0 ? (3 - exponent) / 4 : 0;
}

static void put_hexadecimal(Formatter *f, Parts *parts, char sign) {
  enum { DIGITS = (FRACTION_BITS + 3) / 4, SPARE = DIGITS * 4 - FRACTION_BITS };
  RealBits bits = parts->significand << SPARE;
  int exponent = bits == 0 ? 0 : parts->exponent + FRACTION_BITS;
  int precision = PRECISION(f);
  if (precision < 0) {
    for (precision = DIGITS; precision > 0 && !((bits >> (4 * (DIGITS - precision))) & 15);)
      precision--;
  } else if (precision < DIGITS) {
    const int dropped = 4 * (DIGITS - precision);
    const RealBits half = (RealBits)1 << (dropped - 1);
    const RealBits odd = (bits >> dropped) & 1;
    bits += half - 1 + odd;
    bits = bits >> dropped << dropped;
  }
  char prefix[3];
  int prefix_length = 0;
  if (sign)
    prefix[prefix_length++] = sign;
  prefix[prefix_length++] = '0';
  prefix[prefix_length++] = (f->flags & FLAG_UPPER) ? 'X' : 'x';
  const int point = precision > 0 || (f->flags & FLAG_ALTERNATE);
  const int magnitude = exponent < 0 ? -exponent : exponent;
  const int length = prefix_length + 1 + point + precision + 3 + (magnitude > 9) +
                     (magnitude > 99) + (magnitude > 999);
  const int padding = begin_field(f, prefix, prefix_length, length);
  const char letters = (f->flags & FLAG_UPPER) ? 'A' - 10 : 'a' - 10;
  for (int i = 0; i <= precision; i++) {
    if (i == 1)
      put(f, '.');
    const char digit = i > DIGITS ? 0 : (char)((bits >> (4 * (DIGITS - i))) & 15);
    put(f, (char)(digit + (digit < 10 ? '0' : letters)));
  }
  if (point && precision == 0)
    put(f, '.');
  put_exponent(f, (f->flags & FLAG_UPPER) ? 'P' : 'p', exponent, 1);
  put_repeated(f, ' ', padding);
}

static void put_real(Formatter *f, char conversion, double argument) {
  Parts parts = take_apart(argument);
  const char sign = sign_of(f, parts.negative);
  if (parts.infinite || parts.nan) {
    put_special(f, &parts);
    return;
  }
  if (conversion == 'a') {
    put_hexadecimal(f, &parts, sign);
    return;
  }
  // A number like 1.5 or 1000 is short in binary too: without its last zeros it needs few steps.
  while (parts.exponent < 0 && parts.significand != 0 && !(parts.significand & 1)) {
    parts.significand >>= 1;
    parts.exponent++;
  }
  if (parts.significand == 0)
    parts.exponent = 0;
  const int whole = whole_limbs(parts.exponent);
  const int count = whole + fraction_limbs(parts.exponent);
  uint16_t limbs[count];
  for (int i = 0; i < count; i++)
    limbs[i] = 0;
  Decimal number = {limbs, whole, whole, whole};
  load_decimal(&number, &parts);
  put_rounded(f, &number, sign, conversion);
}
