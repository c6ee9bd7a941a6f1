#include "debugger/expressions/Expression.h"

#include "debugger/expressions/BaseType.h"
#include "debugger/expressions/ExpressionParser.h"
#include "debugger/expressions/ParserException.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace {

constexpr int DeepestTree = 1000;
constexpr int HeaviestTree = 10'000;

/// The location that a value is.
MarkerType* locationOf(const ExpressionType& value, const char* otherwise = "bad expression type")
{
    if (value.getType() != ExpressionType::Location)
        throw ParserException(otherwise);
    return value.getMarker();
}

} // namespace

void Expression::addOperand(const Expression& operand)
{
    m_depth = std::max(m_depth, operand.m_depth + 1);
    m_weight += operand.m_weight;
    if (m_depth > DeepestTree || m_weight > HeaviestTree)
        throw ParserException("expression is too complex");
}

/// Digits with a point, as the language has them.
QString FloatConstantExpression::dump() const
{
    constexpr int MoreThanAnyFinite = 310;
    const double value = m_value.getFloating();
    if (std::isinf(value))
        return QString(MoreThanAnyFinite, u'9') + QStringLiteral(".0");
    const QString digits = QString::number(value, 'f', QLocale::FloatingPointShortest);
    return digits.contains(u'.') ? digits : digits + QStringLiteral(".0");
}

ExpressionType IdentifierExpression::evaluate() const
{
    return m_parser->getIdentifier(m_name.c_str());
}

ExpressionType ScopedIdentifierExpression::evaluate() const
{
    return m_parser->getScopedIdentifier(m_names);
}

QString ScopedIdentifierExpression::dump() const
{
    return (m_global ? QStringLiteral("::") : QString()) + m_names.join(u"::");
}

ExpressionType RegisterExpression::evaluate() const
{
    return m_parser->getRegister(m_name.c_str());
}

CallExpression::CallExpression(ExpressionPtr function, std::vector<ExpressionPtr> arguments,
                               ExpressionParser* parser)
    : m_function(std::move(function)),
      m_arguments(std::move(arguments)),
      m_parser(parser)
{
    addOperand(*m_function);
    for (const ExpressionPtr& it : m_arguments)
        addOperand(*it);
}

ExpressionType CallExpression::evaluate() const
{
    std::list<ExpressionType> arguments;
    for (auto it = m_arguments.rbegin(); it != m_arguments.rend(); ++it)
        arguments.push_front((*it)->evaluate());
    const ExpressionType function = m_function->evaluate();
    return m_parser->callFunction(locationOf(function), arguments);
}

QString CallExpression::dump() const
{
    QStringList arguments;
    for (const ExpressionPtr& it : m_arguments)
        arguments.append(it->dump());
    return m_function->dump() + u'(' + arguments.join(u", ") + u')';
}

CastExpression::CastExpression(BaseTypePtr type, ExpressionPtr operand, ExpressionParser* parser)
    : m_type(std::move(type)),
      m_operand(std::move(operand)),
      m_parser(parser)
{
    for (const ExpressionPtr& it : m_type->expressions())
        addOperand(*it);
    addOperand(*m_operand);
}

ExpressionType CastExpression::evaluate() const
{
    return m_parser->cast(m_type.get(), m_operand->evaluate());
}

QString CastExpression::dump() const
{
    return QStringLiteral("((") + m_type->dump() + u')' + m_operand->dump() + u')';
}

SizeofExpression::SizeofExpression(ExpressionPtr operand, ExpressionParser* parser)
    : m_operand(std::move(operand)),
      m_parser(parser)
{
    addOperand(*m_operand);
}

ExpressionType SizeofExpression::evaluate() const
{
    const ExpressionType value = m_operand->evaluate();
    return m_parser->getSizeof(locationOf(value, "cannot determine sizeof of a constant"));
}

AddressofExpression::AddressofExpression(ExpressionPtr operand, ExpressionParser* parser)
    : m_operand(std::move(operand)),
      m_parser(parser)
{
    addOperand(*m_operand);
}

ExpressionType AddressofExpression::evaluate() const
{
    const ExpressionType value = m_operand->evaluate();
    return m_parser->getAddressof(locationOf(value, "cannot take address of a constant"));
}

ExpressionType BinaryExpression::evaluate() const
{
    const ExpressionType right = m_right->evaluate();
    return apply(m_left->evaluate(), right);
}

QString BinaryExpression::dump() const
{
    return u'(' + m_left->dump() + u' ' + symbol() + u' ' + m_right->dump() + u')';
}

ExpressionType AssignExpression::apply(const ExpressionType& left,
                                       const ExpressionType& right) const
{
    m_parser->assign(locationOf(left), right.resolved());
    return left;
}

ExpressionType LeftSquareBracketExpression::apply(const ExpressionType& left,
                                                  const ExpressionType& right) const
{
    MarkerType* location = locationOf(left);
    const ExpressionType index = right.resolved();
    if (!index.isNumberType())
        throw ParserException("bad index type");
    return m_parser->getDereference(location, static_cast<unsigned>(index.getInteger()));
}

ExpressionType DotExpression::evaluate() const { return apply(left()->evaluate(), {}); }

ExpressionType DotExpression::apply(const ExpressionType& left, const ExpressionType&) const
{
    MarkerType* location = locationOf(left);
    if (const auto* scoped = dynamic_cast<const ScopedIdentifierExpression*>(right().get()))
        return m_parser->getDereference(location, scoped->names());
    const auto& field = static_cast<const IdentifierExpression&>(*right());
    return m_parser->getDereference(location, field.name().c_str());
}
