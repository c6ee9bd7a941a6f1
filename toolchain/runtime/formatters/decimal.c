#include "decimal.h"

enum { LIMB_BASE = 10000, LIMB_DIGITS = 4 };

static const uint16_t powers_of_ten[LIMB_DIGITS] = {1, 10, 100, 1000};

void __decimal_shift_left(Decimal *number, int bits, uint16_t addend) {
  uint32_t carry = addend;
  for (int i = number->end; i-- > number->first;) {
    const uint32_t limb = ((uint32_t)number->limbs[i] << bits) + carry;
    carry = limb / LIMB_BASE;
    number->limbs[i] = (uint16_t)limb - (uint16_t)carry * (uint16_t)LIMB_BASE;
  }
  while (carry != 0) {
    number->limbs[--number->first] = (uint16_t)(carry % LIMB_BASE);
    carry /= LIMB_BASE;
  }
  while (number->end > number->point && number->limbs[number->end - 1] == 0)
    number->end--;
}

void __decimal_shift_right(Decimal *number, int bits) {
  // 10000 has four factors of two, so that a limb's remainder makes a whole number below it.
  const uint16_t unit = LIMB_BASE >> bits;
  const uint16_t mask = (uint16_t)((1 << bits) - 1);
  uint16_t carry = 0;
  for (int i = number->first; i < number->end; i++) {
    const uint16_t limb = number->limbs[i];
    number->limbs[i] = (uint16_t)((limb >> bits) + carry);
    carry = (uint16_t)((limb & mask) * unit);
  }
  if (carry != 0)
    number->limbs[number->end++] = carry;
  if (number->first < number->end && number->limbs[number->first] == 0)
    number->first++;
}

int __decimal_exponent(const Decimal *number) {
  int first = number->first;
  while (first < number->end && number->limbs[first] == 0)
    first++;
  if (first >= number->end)
    return 0;
  int digits = LIMB_DIGITS - 1;
  while (number->limbs[first] < powers_of_ten[digits])
    digits--;
  return (number->point - 1 - first) * LIMB_DIGITS + digits;
}

// The limb of 10^place, and how many digits follow that one in it.
static int limb_index(const Decimal *number, int place, int *lower) {
  *lower = place & (LIMB_DIGITS - 1);
  return number->point - 1 - ((place - *lower) >> 2);
}

int __decimal_digit(const Decimal *number, int place) {
  int lower;
  const int i = limb_index(number, place, &lower);
  if (i < number->first || i >= number->end)
    return 0;
  return number->limbs[i] / powers_of_ten[lower] % 10;
}

static int anything_below(const Decimal *number, int place) {
  int lower;
  int i = limb_index(number, place, &lower);
  if (i >= number->end)
    return 0;
  if (i >= number->first && number->limbs[i] % powers_of_ten[lower] != 0)
    return 1;
  for (i = i < number->first ? number->first : i + 1; i < number->end; i++) {
    if (number->limbs[i] != 0)
      return 1;
  }
  return 0;
}

void __decimal_round(Decimal *number, int place) {
  int lower;
  int i = limb_index(number, place, &lower);
  if (i >= number->end)
    return;
  const int next = __decimal_digit(number, place - 1);
  const int up = next > 5 || (next == 5 && (anything_below(number, place - 1) ||
                                            (__decimal_digit(number, place) & 1)));
  for (int rest = number->end; --rest > i && rest >= number->first;)
    number->limbs[rest] = 0;
  number->end = i + 1;
  if (i < number->first) {
    if (!up)
      return;
    number->first = i;
  }
  const uint16_t unit = powers_of_ten[lower];
  number->limbs[i] = (uint16_t)(number->limbs[i] - number->limbs[i] % unit);
  if (!up)
    return;
  number->limbs[i] = (uint16_t)(number->limbs[i] + unit);
  while (number->limbs[i] >= LIMB_BASE) {
    number->limbs[i] = (uint16_t)(number->limbs[i] - LIMB_BASE);
    number->limbs[--i]++;
  }
  if (i < number->first)
    number->first = i;
}
