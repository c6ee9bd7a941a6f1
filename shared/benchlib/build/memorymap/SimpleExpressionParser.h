#pragma once

#include <QtGlobal>

/// Expressions of constants, for addresses and lengths: decimal and "0x" numbers of 64 bits with
/// the operators and precedences of C, all of them left-associative, without "?:", "," and
/// assignments. The left operand decides: numbers are signed, comparisons and logic give a truth
/// value, which can only be compared, negated by "!" and added. Names, registers, strings,
/// fractions, casts and calls are refused, and so is a division by zero.
///
/// What stands behind a complete expression isn't looked at, as everywhere in the language of
/// expressions, as long as it can't continue it.
class SimpleExpressionParser {
public:
    /// The shared object.
    static SimpleExpressionParser& instance();

    /// The value; 0 with `ok` false for a text that isn't such an expression.
    quint64 getUInteger(const char* text, bool& ok) const;
};
