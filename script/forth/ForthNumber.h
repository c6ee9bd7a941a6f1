#pragma once

#include "script/forth/X.h"

#include <optional>

/// A number of source text: one cell, or two for one with a ".".
struct ForthNumber {
    X low;
    std::optional<X> high; ///< of a double-cell number
    int digitsBehindPoint = 0;
};

/// Nothing if the text isn't a number. Throws for one that has no room in its cells.
///
/// Digits may have a sign and then a base: $ 16, % 2, # 10, none 10. A text with an "e" is a float.
std::optional<ForthNumber> parseNumber(const QString& text);

/// The value of a digit; -1 if it isn't one of the base.
int digitValue(QChar digit, int base);
