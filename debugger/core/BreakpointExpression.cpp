#include "debugger/core/BreakpointExpression.h"

#include "debugger/expressions/MarkerType.h"
#include "debugger/interface/DebuggerBreakpoint.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using Term = BreakpointExpression;

[[noreturn]] void fail(const char* text)
{
    throw DebuggerBreakpointFailure(QString::fromLatin1(text));
}

template <typename Kind> bool isA(const ExpressionPtr& expression)
{
    return dynamic_cast<const Kind*>(expression.get()) != nullptr;
}

int comparisonOf(const ExpressionPtr& expression)
{
    using Test = bool (*)(const ExpressionPtr&);
    constexpr Test Comparisons[] = {isA<EqExpression>, isA<NeExpression>, isA<GeExpression>,
                                    isA<LeExpression>, isA<GtExpression>, isA<LtExpression>};
    for (std::size_t i = 0; i < std::size(Comparisons); ++i)
        if (Comparisons[i](expression))
            return Term::Equal + static_cast<int>(i);
    return Term::Plain;
}

/// The operand's value where it is a number; located values are read.
ExpressionType constantOf(const ExpressionPtr& expression, const char* otherwise)
{
    const ExpressionType value = expression->evaluate().resolved();
    if (!value.isNumberType())
        fail(otherwise);
    return value;
}

void setAddress(Term& term, const ExpressionType& place)
{
    if (place.getType() == ExpressionType::SignedInteger
        || place.getType() == ExpressionType::UnsignedInteger) {
        term.address = static_cast<unsigned>(place.getUInteger());
        term.length = place.getSizeInBytes();
        return;
    }
    const auto* marker = dynamic_cast<const DebugMarkerType*>(place.getMarker());
    if (!marker)
        fail("Expression has no address");
    switch (marker->kind()) {
    case DebugMarkerType::Data: term.address = marker->address(); break;
    case DebugMarkerType::Register:
        term.address = marker->base();
        term.isRegister = true;
        break;
    case DebugMarkerType::Constant: term.address = marker->base(); break;
    default: fail("Expression has no address");
    }
    term.length = marker->size();
}

Term termOf(const ExpressionPtr& expression)
{
    Term term;
    term.kind = comparisonOf(expression);
    if (term.kind == Term::Plain) {
        setAddress(term, expression->evaluate());
        return term;
    }
    const auto& comparison = static_cast<const BinaryExpression&>(*expression);
    ExpressionPtr left = comparison.left();
    if (const auto* masked = dynamic_cast<const BinaryExpression*>(left.get())) {
        // An element or a field is a place, not an operation on one.
        const bool isPlace = isA<LeftSquareBracketExpression>(left) || isA<DotExpression>(left);
        if (!isPlace) {
            if (!isA<BitAndExpression>(left))
                fail("& is the only supported mask operator");
            term.mask = static_cast<unsigned>(
                constantOf(masked->right(), "Constant required for rhs of mask").getUInteger());
            left = masked->left();
        }
    }
    term.value = static_cast<unsigned>(
        constantOf(comparison.right(), "Constant required for rhs").getUInteger());
    const ExpressionType place = left->evaluate();
    if (place.getType() != ExpressionType::Location)
        fail("Symbol required for lhs");
    setAddress(term, place);
    return term;
}

void addTerms(const ExpressionPtr& expression, std::vector<Term>& terms)
{
    if (const auto* both = dynamic_cast<const LogicalAndExpression*>(expression.get())) {
        addTerms(both->left(), terms);
        addTerms(both->right(), terms);
    } else if (const auto* inverted = dynamic_cast<const LogicalNotExpression*>(expression.get())) {
        Term term = termOf(inverted->operand());
        if (term.kind != Term::Plain)
            fail("! only applicable to range expressions");
        term.kind = Term::InvertedRange;
        terms.push_back(term);
    } else {
        terms.push_back(termOf(expression));
    }
}

} // namespace

std::vector<BreakpointExpression> evaluateBreakpointExpression(const ExpressionPtr& expression)
{
    std::vector<BreakpointExpression> terms;
    addTerms(expression, terms);
    return terms;
}
