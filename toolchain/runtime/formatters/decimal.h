#pragma once

#include <stdint.h>

/// An exact decimal number in limbs of four digits, most significant first. The memory around
/// the limbs in use is zero, with room for what the shifts add: to the left one limb for each
/// 13 bits of a left shift and one more, to the right one limb for each right shift.
typedef struct {
  uint16_t *limbs;
  int first;  ///< index of the most significant limb in use
  int point;  ///< index of the first limb of the fraction
  int end;    ///< one past the last limb in use
} Decimal;

/// Multiplies by 2^bits, 1 to 16, and adds `addend` to the last limb in use.
void __decimal_shift_left(Decimal *number, int bits, uint16_t addend);

/// Divides by 2^bits, 1 to 4.
void __decimal_shift_right(Decimal *number, int bits);

/// The largest exponent of ten of which the number holds a digit; 0 for zero.
int __decimal_exponent(const Decimal *number);

/// The digit that stands for 10^place.
int __decimal_digit(const Decimal *number, int place);

/// Rounds to a multiple of 10^place, to the nearest, ties to even.
void __decimal_round(Decimal *number, int place);
