#pragma once

#include <list>

class Expression;
class ExpressionType;
struct HBreakpoint;

/// One term of a breakpoint's expression: an address range, and what its data is compared with.
struct BreakpointExpression {
    enum Kind {
        Plain = 0,
        InvertedRange = 1,
        Equal = 2,
        NotEqual = 3,
        GreaterOrEqual = 4,
        LessOrEqual = 5,
        Greater = 6,
        Less = 7,
    };

    Kind kind = Plain;
    bool isRegister = false; ///< the address is a register's number
    unsigned address = 0;
    unsigned length = 0; ///< bytes
    unsigned value = 0;
    unsigned mask = 0xFFFFFFFF;

    /// Puts address, length and comparison into a monitor's record.
    void applyTo(HBreakpoint& breakpoint) const;
};

/// The meaning of a tree of the expression language as one term: a place, alone or compared with a
/// constant, of which "&" may take some bits. Throws DebuggerBreakpointFailure, and ParserException
/// where evaluating a part fails.
BreakpointExpression evaluateBreakpointExpression(const Expression* expression);

/// The same for terms that are joined by "&&", of which a plain one may be inverted by "!", in
/// order.
void evaluateBreakpointExpression(const Expression* expression,
                                  std::list<BreakpointExpression>& terms);

/// The address that a number or a located value stands for. Throws DebuggerBreakpointFailure for
/// any other.
unsigned breakpointAddress(const ExpressionType& value);
