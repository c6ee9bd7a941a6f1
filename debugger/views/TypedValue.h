#pragma once

#include "debugger/expressions/ExpressionType.h"

/// What a user typed in place of a value, in the form in which that is shown (a DisplayMode). False
/// if it is no such constant; it may still be an expression.
bool typedValue(const ExpressionType& shown, const QString& text, int radix, ExpressionType& value);
