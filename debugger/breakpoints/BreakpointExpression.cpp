#include "debugger/breakpoints/BreakpointExpression.h"

#include "debugger/breakpoints/DebuggerBreakpoint.h"
#include "debugger/expressions/Expression.h"
#include "debugger/expressions/MarkerType.h"
#include "target/HBreakpoint.h"

namespace {

using Kind = BreakpointExpression::Kind;

/// How a monitor numbers the comparisons.
constexpr unsigned comparisonNumbers[] = {0,
                                          0,
                                          HBreakpoint::Equal,
                                          HBreakpoint::NotEqual,
                                          HBreakpoint::GreaterOrEqual,
                                          HBreakpoint::LessOrEqual,
                                          5,
                                          4};

template <typename T> const T* as(const Expression* expression)
{
    return dynamic_cast<const T*>(expression);
}

Kind comparisonOf(const Expression* expression)
{
    if (as<EqExpression>(expression) != nullptr)
        return BreakpointExpression::Equal;
    if (as<NeExpression>(expression) != nullptr)
        return BreakpointExpression::NotEqual;
    if (as<GeExpression>(expression) != nullptr)
        return BreakpointExpression::GreaterOrEqual;
    if (as<LeExpression>(expression) != nullptr)
        return BreakpointExpression::LessOrEqual;
    if (as<GtExpression>(expression) != nullptr)
        return BreakpointExpression::Greater;
    if (as<LtExpression>(expression) != nullptr)
        return BreakpointExpression::Less;
    return BreakpointExpression::Plain;
}

/// An element or a field: two operands, but a place.
bool isPlace(const BinaryExpression* expression)
{
    return as<LeftSquareBracketExpression>(expression) != nullptr
        || as<DotExpression>(expression) != nullptr;
}

const DebugMarkerType* placeOf(const ExpressionType& value)
{
    return dynamic_cast<const DebugMarkerType*>(value.getMarker());
}

/// The number that an expression is now; the monitor compares with it from then on.
unsigned numberOf(const Expression& expression, const char* otherwise)
{
    const ExpressionType value = expression.evaluate().resolved();
    if (!value.isNumberType())
        throw DebuggerBreakpointFailure(otherwise);
    return static_cast<unsigned>(value.getInteger());
}

void setPlace(BreakpointExpression& term, const DebugMarkerType& place)
{
    switch (place.kind()) {
    case DebugMarkerType::Data: term.address = place.address(); break;
    case DebugMarkerType::Register:
        term.address = place.base();
        term.isRegister = true;
        break;
    case DebugMarkerType::Constant: term.address = place.base(); break;
    default: throw DebuggerBreakpointFailure("Expression has no address");
    }
    term.length = place.size();
}

void setAddress(BreakpointExpression& term, const ExpressionType& value)
{
    if (value.isIntegerType()) {
        term.address = static_cast<unsigned>(value.getUInteger());
        term.length = value.getSizeInBytes();
    } else if (const DebugMarkerType* place = placeOf(value)) {
        setPlace(term, *place);
    } else {
        throw DebuggerBreakpointFailure("Expression has no address");
    }
}

} // namespace

void BreakpointExpression::applyTo(HBreakpoint& breakpoint) const
{
    breakpoint.address = address;
    breakpoint.isRegister = isRegister;
    breakpoint.length = length;
    breakpoint.inverse = kind == InvertedRange;
    breakpoint.valued = kind >= Equal;
    if (!breakpoint.valued)
        return;
    breakpoint.value = value;
    breakpoint.mask = mask;
    breakpoint.comparison = comparisonNumbers[kind];
}

BreakpointExpression evaluateBreakpointExpression(const Expression* expression)
{
    BreakpointExpression term;
    term.kind = comparisonOf(expression);
    if (term.kind == BreakpointExpression::Plain) {
        setAddress(term, expression->evaluate());
        return term;
    }
    const auto* comparison = static_cast<const BinaryExpression*>(expression);
    const Expression* left = comparison->left().get();
    const auto* masked = as<BinaryExpression>(left);
    if (masked != nullptr && !isPlace(masked)) {
        if (as<BitAndExpression>(left) == nullptr)
            throw DebuggerBreakpointFailure("& is the only supported mask operator");
        term.mask = numberOf(*masked->right(), "Constant required for rhs of mask");
        left = masked->left().get();
    }
    term.value = numberOf(*comparison->right(), "Constant required for rhs");
    const ExpressionType place = left->evaluate();
    if (place.getType() != ExpressionType::Location)
        throw DebuggerBreakpointFailure("Symbol required for lhs");
    setAddress(term, place);
    return term;
}

void evaluateBreakpointExpression(const Expression* expression,
                                  std::list<BreakpointExpression>& terms)
{
    if (const auto* both = as<LogicalAndExpression>(expression)) {
        evaluateBreakpointExpression(both->left().get(), terms);
        evaluateBreakpointExpression(both->right().get(), terms);
        return;
    }
    const auto* inverted = as<LogicalNotExpression>(expression);
    if (inverted == nullptr) {
        terms.push_back(evaluateBreakpointExpression(expression));
        return;
    }
    BreakpointExpression term = evaluateBreakpointExpression(inverted->operand().get());
    if (term.kind != BreakpointExpression::Plain)
        throw DebuggerBreakpointFailure("! only applicable to range expressions");
    term.kind = BreakpointExpression::InvertedRange;
    terms.push_back(term);
}

unsigned breakpointAddress(const ExpressionType& value)
{
    BreakpointExpression term;
    setAddress(term, value);
    return term.address;
}
