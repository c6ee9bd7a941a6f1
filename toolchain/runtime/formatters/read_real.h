// Text to a floating-point number, correctly rounded. Included by strtod.c and strtof.c, which
// define REAL_DOUBLE or not and the name of the function.

#include "decimal.h"

#include <errno.h>
#include <stddef.h>
#include <stdint.h>

#ifdef REAL_DOUBLE
typedef double Real;
typedef uint64_t RealBits;
enum {
  FRACTION_BITS = 52,
  EXPONENT_MAX = 2047,
  LEAST_EXPONENT = -1074,  // of two, for the last bit of a significand
  TEN_LEAST = -345,        // numbers below this power of ten are zero,
  TEN_MOST = 310,          // from this one on infinite
  DIGITS_MOST = 772,       // no number that is halfway between two doubles has more
  WHOLE_DIGITS = 16,       // 10^17 fits 57 bits
  SHORT_DIGITS = 10,       // 10^11 * 2^16 is below 2^53
};
#else
typedef float Real;
typedef uint32_t RealBits;
enum {
  FRACTION_BITS = 23,
  EXPONENT_MAX = 255,
  LEAST_EXPONENT = -149,
  TEN_LEAST = -66,
  TEN_MOST = 40,
  DIGITS_MOST = 116,
  WHOLE_DIGITS = 8,
  SHORT_DIGITS = 1,
};
#endif

typedef union {
  RealBits bits;
  Real value;
} RealUnion;

static Real real_of(RealBits bits) {
  RealUnion real;
  real.bits = bits;
  return real.value;
}

static Real infinity_of(int out_of_range) {
  if (out_of_range)
    errno = ERANGE;
  return real_of((RealBits)EXPONENT_MAX << FRACTION_BITS);
}

// ---- Syntax

static int is_digit(char c) {
  return c >= '0' && c <= '9';
}

static int hexadecimal_digit(char c) {
  if (is_digit(c))
    return c - '0';
  c |= 0x20;
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

// The text behind `word` if `text` begins with it in any case, else null.
static const char *behind_word(const char *text, const char *word) {
  for (; *word; word++, text++) {
    if ((*text | 0x20) != *word)
      return NULL;
  }
  return text;
}

// Reads an exponent behind `letter`, if there is one; values that are out of every range stop
// growing.
static const char *read_exponent(const char *text, char letter, int *exponent) {
  *exponent = 0;
  if ((*text | 0x20) != letter)
    return text;
  const char *digit = text + 1;
  const int negative = *digit == '-';
  if (*digit == '-' || *digit == '+')
    digit++;
  if (!is_digit(*digit))
    return text;
  int value = 0;
  for (; is_digit(*digit); digit++) {
    if (value < 2000)
      value = value * 10 + (*digit - '0');
  }
  *exponent = negative ? -value : value;
  return digit;
}

// ---- Decimal

typedef struct {
  const char *digits;  // the first one that isn't zero
  int count;           // of digits from there on, without a point among them
  int whole;           // the place of the point behind the first of them
  const char *end;     // of the number
} DecimalText;

static int limit(int value) {
  return value > 20000 ? 20000 : value;
}

// False if there is no digit at all.
static int scan_decimal(const char *text, DecimalText *number) {
  int any = 0;
  int point = 0;
  number->digits = NULL;
  number->count = 0;
  number->whole = 0;
  for (;; text++) {
    if (*text == '.' && !point) {
      point = 1;
      continue;
    }
    if (!is_digit(*text))
      break;
    any = 1;
    if (!number->digits && *text != '0')
      number->digits = text;
    if (number->digits) {
      number->count = limit(number->count + 1);
      if (!point)
        number->whole = limit(number->whole + 1);
    } else if (point) {
      number->whole--;
    }
  }
  if (!any)
    return 0;
  int exponent;
  number->end = read_exponent(text, 'e', &exponent);
  number->whole += exponent;
  return 1;
}

static void put_digit(Decimal *number, int place, uint16_t digit) {
  static const uint16_t powers[] = {1, 10, 100, 1000};
  const int lower = place & 3;
  number->limbs[number->point - 1 - ((place - lower) >> 2)] += (uint16_t)(digit * powers[lower]);
}

static void load_digits(Decimal *number, const DecimalText *text, int count) {
  const char *digit = text->digits;
  int place = text->whole;
  for (int i = 0; i < count; digit++) {
    if (*digit == '.')
      continue;
    put_digit(number, --place, (uint16_t)(*digit - '0'));
    i++;
  }
  // What lies beyond the digits that can decide a tie counts only as more than nothing.
  if (count < text->count)
    put_digit(number, --place, 1);
}

static RealBits whole_part(const Decimal *number) {
  RealBits whole = 0;
  for (int i = number->first; i < number->point; i++)
    whole = whole * 10000 + (i < number->end ? number->limbs[i] : 0);
  return whole;
}

static void shift_right(Decimal *number, int bits) {
  for (; bits > 0; bits -= 4)
    __decimal_shift_right(number, bits < 4 ? bits : 4);
}

static int bit_length(RealBits bits) {
  int length = 0;
  for (; bits != 0; bits >>= 1)
    length++;
  return length;
}

// Brings the whole part to FRACTION_BITS + 1 bits, or fewer for a subnormal number; the answer
// is the exponent of two that makes up for it.
static int scale(Decimal *number) {
  int exponent = 0;
  for (; __decimal_exponent(number) > WHOLE_DIGITS; exponent += 4)
    __decimal_shift_right(number, 4);
  for (; __decimal_exponent(number) <= SHORT_DIGITS; exponent -= 16)
    __decimal_shift_left(number, 16, 0);
  const int missing = FRACTION_BITS + 1 - bit_length(whole_part(number));
  if (missing > 0)
    __decimal_shift_left(number, missing, 0);
  else
    shift_right(number, -missing);
  exponent -= missing;
  const int below = LEAST_EXPONENT - exponent;
  if (below > 0) {
    shift_right(number, below);
    exponent = LEAST_EXPONENT;
  }
  return exponent;
}

// Limbs for the whole part with what is shifted into it, and for the fraction.
static int whole_limbs(const DecimalText *text) {
  return (text->whole > 0 ? text->whole / 4 : 0) + WHOLE_DIGITS / 4 + 4;
}

static int fraction_limbs(const DecimalText *text, int count) {
  const int digits = count - text->whole + 1;
  const int shifts = text->whole > 0 ? text->whole - text->whole / 8 : 0;
  return (digits > 0 ? digits / 4 : 0) + shifts + FRACTION_BITS / 4 + 8;
}

static Real round_decimal(const DecimalText *text) {
  const int digits = text->count < DIGITS_MOST ? text->count : DIGITS_MOST;
  const int whole = whole_limbs(text);
  const int count = whole + fraction_limbs(text, digits);
  uint16_t limbs[count];
  for (int i = 0; i < count; i++)
    limbs[i] = 0;
  Decimal number = {limbs, 0, whole, whole};
  load_digits(&number, text, digits);
  number.end = count;
  while (number.end > whole && limbs[number.end - 1] == 0)
    number.end--;
  while (limbs[number.first] == 0)
    number.first++;
  const int exponent = scale(&number);
  __decimal_round(&number, 0);
  // The leading bit, if there is one, makes the exponent field one more.
  const RealBits significand = whole_part(&number);
  const int field = exponent - LEAST_EXPONENT;
  const RealBits bits = ((RealBits)field << FRACTION_BITS) + significand;
  if (field >= EXPONENT_MAX || bits >> FRACTION_BITS >= EXPONENT_MAX)
    return infinity_of(1);
  if (bits >> FRACTION_BITS == 0)
    errno = ERANGE;
  return real_of(bits);
}

static const char *read_decimal(const char *text, Real *value) {
  DecimalText number;
  if (!scan_decimal(text, &number))
    return NULL;
  if (!number.digits) {
    *value = 0;
  } else if (number.whole > TEN_MOST) {
    *value = infinity_of(1);
  } else if (number.whole < TEN_LEAST) {
    errno = ERANGE;
    *value = 0;
  } else {
    *value = round_decimal(&number);
  }
  return number.end;
}

// ---- Hexadecimal

// Keeps the leading bits, with all later ones gathered in the last.
static const char *read_hexadecimal(const char *text, Real *value) {
  RealBits bits = 0;
  int exponent = 0;
  int point = 0;
  int any = 0;
  const RealBits full = (RealBits)15 << (sizeof(RealBits) * 8 - 4);
  for (;; text++) {
    if (*text == '.' && !point) {
      point = 1;
      continue;
    }
    const int digit = hexadecimal_digit(*text);
    if (digit < 0)
      break;
    any = 1;
    if (bits & full) {
      bits |= digit != 0;
      exponent += point ? 0 : 4;
    } else {
      bits = bits << 4 | (RealBits)digit;
      exponent -= point ? 4 : 0;
    }
  }
  if (!any)
    return NULL;
  int power;
  text = read_exponent(text, 'p', &power);
  *value = 0;
  if (bits == 0)
    return text;
  exponent += power;
  int excess = bit_length(bits) - (FRACTION_BITS + 1);
  if (exponent + excess < LEAST_EXPONENT)
    excess = LEAST_EXPONENT - exponent;
  if (excess > (int)sizeof(RealBits) * 8 - 1) {
    errno = ERANGE;
    return text;
  }
  if (excess > 0) {
    const RealBits lost = bits & (((RealBits)1 << excess) - 1);
    const RealBits half = (RealBits)1 << (excess - 1);
    bits >>= excess;
    bits += lost > half || (lost == half && (bits & 1));
  } else {
    bits <<= -excess;
  }
  const int field = exponent + excess - LEAST_EXPONENT;
  bits += (RealBits)field << FRACTION_BITS;
  *value = field >= EXPONENT_MAX || bits >> FRACTION_BITS >= EXPONENT_MAX ? infinity_of(1)
                                                                          : real_of(bits);
  return text;
}

// ---- Entry

static const char *read_special(const char *text, Real *value) {
  const char *end = behind_word(text, "inf");
  if (end) {
    const char *longer = behind_word(end, "inity");
    *value = infinity_of(0);
    return longer ? longer : end;
  }
  end = behind_word(text, "nan");
  if (end) {
    *value = real_of((RealBits)(2 * EXPONENT_MAX + 1) << (FRACTION_BITS - 1));
    if (*end == '(') {
      const char *close = end + 1;
      while (is_digit(*close) || (*close | 0x20) - 'a' + 0u < 26u || *close == '_')
        close++;
      if (*close == ')')
        end = close + 1;
    }
  }
  return end;
}

static Real read_real(const char *text, char **end) {
  const char *start = text;
  Real value = 0;
  while (*start == ' ' || (*start >= '\t' && *start <= '\r'))
    start++;
  const int negative = *start == '-';
  if (*start == '-' || *start == '+')
    start++;
  const char *behind = NULL;
  if (*start == '0' && (start[1] | 0x20) == 'x')
    behind = read_hexadecimal(start + 2, &value);
  if (!behind)
    behind = read_special(start, &value);
  if (!behind)
    behind = read_decimal(start, &value);
  if (end)
    *end = (char *)(behind ? behind : text);
  return negative && behind ? -value : value;
}
