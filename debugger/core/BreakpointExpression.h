#pragma once

#include "debugger/expressions/Expression.h"

#include <vector>

/// One term of a breakpoint expression: a place, and what is compared there.
struct BreakpointExpression {
    enum Kind {
        Plain = 0,
        InvertedRange = 1,
        Equal = 2,
        NotEqual = 3,
        GreaterOrEqual = 4,
        LessOrEqual = 5,
        GreaterThan = 6,
        LessThan = 7
    };

    int kind = Plain;
    bool isRegister = false;
    unsigned address = 0; ///< or the register's number
    unsigned length = 0;  ///< bytes
    unsigned value = 0;
    unsigned mask = 0xFFFFFFFF;
};

/// The terms of `a && b && ...`, from left to right. Each is an address, a located value, one of
/// these compared with a constant, masked or not, or `!` and a range. Throws
/// DebuggerBreakpointFailure for what is no such term, and what the evaluation throws.
std::vector<BreakpointExpression> evaluateBreakpointExpression(const ExpressionPtr& expression);
