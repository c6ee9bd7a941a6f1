#pragma once

#include "debugger/expressions/ExpressionType.h"

#include <QStringList>

#include <list>
#include <memory>
#include <vector>

class BaseType;
class Expression;
class ExpressionParser;

using ExpressionPtr = std::shared_ptr<const Expression>;
using BaseTypePtr = std::shared_ptr<const BaseType>;

/// A node of an expression's tree. Subtrees may be shared: `a += b` is `a = a + b` with one `a`.
/// The parser must outlive the tree.
class Expression {
public:
    virtual ~Expression() = default;

    /// Throws ParserException, and what the parser's operations throw.
    virtual ExpressionType evaluate() const = 0;
    /// The expression as text again, with all parentheses.
    virtual QString dump() const = 0;

    /// Levels of the tree, and the nodes that an evaluation visits; neither is ever large enough to
    /// exhaust the stack or to take long.
    int depth() const { return m_depth; }
    int weight() const { return m_weight; }

protected:
    /// Throws ParserException "expression is too complex" when the bounds are passed.
    void addOperand(const Expression& operand);

private:
    int m_depth = 1;
    int m_weight = 1;
};

class ConstantExpression : public Expression {
public:
    explicit ConstantExpression(ExpressionType value) : m_value(std::move(value)) { }
    ExpressionType evaluate() const override { return m_value; }

protected:
    ExpressionType m_value;
};

class IntegerConstantExpression final : public ConstantExpression {
public:
    using ConstantExpression::ConstantExpression;
    QString dump() const override { return m_value.toStr(10, true); }
};

class FloatConstantExpression final : public ConstantExpression {
public:
    using ConstantExpression::ConstantExpression;
    QString dump() const override;
};

class StringConstantExpression final : public ConstantExpression {
public:
    using ConstantExpression::ConstantExpression;
    QString dump() const override { return u'"' + m_value.getString() + u'"'; }
};

/// A name. Behind "." it names a field, and isn't evaluated.
class IdentifierExpression final : public Expression {
public:
    IdentifierExpression(std::string name, ExpressionParser* parser)
        : m_name(std::move(name)),
          m_parser(parser)
    {
    }
    const std::string& name() const { return m_name; }
    ExpressionType evaluate() const override;
    QString dump() const override { return QString::fromStdString(m_name); }

private:
    std::string m_name;
    ExpressionParser* m_parser;
};

class ScopedIdentifierExpression final : public Expression {
public:
    ScopedIdentifierExpression(QStringList names, bool global, ExpressionParser* parser)
        : m_names(std::move(names)),
          m_global(global),
          m_parser(parser)
    {
    }
    const QStringList& names() const { return m_names; }
    ExpressionType evaluate() const override;
    QString dump() const override;

private:
    QStringList m_names;
    bool m_global;
    ExpressionParser* m_parser;
};

class RegisterExpression final : public Expression {
public:
    RegisterExpression(std::string name, ExpressionParser* parser)
        : m_name(std::move(name)),
          m_parser(parser)
    {
    }
    ExpressionType evaluate() const override;
    QString dump() const override { return u'@' + QString::fromStdString(m_name); }

private:
    std::string m_name;
    ExpressionParser* m_parser;
};

class CallExpression final : public Expression {
public:
    CallExpression(ExpressionPtr function, std::vector<ExpressionPtr> arguments,
                   ExpressionParser* parser);
    ExpressionType evaluate() const override;
    QString dump() const override;

private:
    ExpressionPtr m_function;
    std::vector<ExpressionPtr> m_arguments;
    ExpressionParser* m_parser;
};

/// A cast, which applies to all of the expression behind it.
class CastExpression final : public Expression {
public:
    CastExpression(BaseTypePtr type, ExpressionPtr operand, ExpressionParser* parser);
    ExpressionType evaluate() const override;
    QString dump() const override;

private:
    BaseTypePtr m_type;
    ExpressionPtr m_operand;
    ExpressionParser* m_parser;
};

class SizeofExpression final : public Expression {
public:
    SizeofExpression(ExpressionPtr operand, ExpressionParser* parser);
    ExpressionType evaluate() const override;
    QString dump() const override { return QStringLiteral("sizeof(") + m_operand->dump() + u')'; }

private:
    ExpressionPtr m_operand;
    ExpressionParser* m_parser;
};

class AddressofExpression final : public Expression {
public:
    AddressofExpression(ExpressionPtr operand, ExpressionParser* parser);
    ExpressionType evaluate() const override;
    QString dump() const override { return QStringLiteral("(&") + m_operand->dump() + u')'; }

private:
    ExpressionPtr m_operand;
    ExpressionParser* m_parser;
};

class UnaryExpression : public Expression {
public:
    explicit UnaryExpression(ExpressionPtr operand) : m_operand(std::move(operand))
    {
        addOperand(*m_operand);
    }
    const ExpressionPtr& operand() const { return m_operand; }
    ExpressionType evaluate() const override { return apply(m_operand->evaluate()); }
    QString dump() const override { return u'(' + symbol() + m_operand->dump() + u')'; }

protected:
    virtual QString symbol() const = 0;
    virtual ExpressionType apply(const ExpressionType& operand) const = 0;

private:
    ExpressionPtr m_operand;
};

/// Two operands, of which the right one is evaluated first.
class BinaryExpression : public Expression {
public:
    BinaryExpression(ExpressionPtr left, ExpressionPtr right)
        : m_left(std::move(left)),
          m_right(std::move(right))
    {
        addOperand(*m_left);
        addOperand(*m_right);
    }
    const ExpressionPtr& left() const { return m_left; }
    const ExpressionPtr& right() const { return m_right; }
    ExpressionType evaluate() const override;
    QString dump() const override;

protected:
    virtual QString symbol() const = 0;
    virtual ExpressionType apply(const ExpressionType& left, const ExpressionType& right) const = 0;

private:
    ExpressionPtr m_left;
    ExpressionPtr m_right;
};

/// Defines the class of an operation that is an operator of ExpressionType.
#define UNARY_EXPRESSION(Name, op)                                                                 \
    class Name final : public UnaryExpression {                                                    \
    public:                                                                                        \
        using UnaryExpression::UnaryExpression;                                                    \
                                                                                                   \
    protected:                                                                                     \
        QString symbol() const override { return QStringLiteral(#op); }                            \
        ExpressionType apply(const ExpressionType& operand) const override { return op operand; }  \
    };
#define BINARY_EXPRESSION(Name, op)                                                                \
    class Name final : public BinaryExpression {                                                   \
    public:                                                                                        \
        using BinaryExpression::BinaryExpression;                                                  \
                                                                                                   \
    protected:                                                                                     \
        QString symbol() const override { return QStringLiteral(#op); }                            \
        ExpressionType apply(const ExpressionType& left,                                           \
                             const ExpressionType& right) const override                           \
        {                                                                                          \
            return left op right;                                                                  \
        }                                                                                          \
    };

UNARY_EXPRESSION(NegateExpression, -)
UNARY_EXPRESSION(BitNotExpression, ~)
UNARY_EXPRESSION(LogicalNotExpression, !)
BINARY_EXPRESSION(PlusExpression, +)
BINARY_EXPRESSION(MinusExpression, -)
BINARY_EXPRESSION(MultiplyExpression, *)
BINARY_EXPRESSION(DivideExpression, /)
BINARY_EXPRESSION(ModExpression, %)
BINARY_EXPRESSION(LshiftExpression, <<)
BINARY_EXPRESSION(RshiftExpression, >>)
BINARY_EXPRESSION(BitAndExpression, &)
BINARY_EXPRESSION(BitOrExpression, |)
BINARY_EXPRESSION(BitXorExpression, ^)
BINARY_EXPRESSION(LogicalAndExpression, &&)
BINARY_EXPRESSION(LogicalOrExpression, ||)
BINARY_EXPRESSION(EqExpression, ==)
BINARY_EXPRESSION(NeExpression, !=)
BINARY_EXPRESSION(LtExpression, <)
BINARY_EXPRESSION(LeExpression, <=)
BINARY_EXPRESSION(GtExpression, >)
BINARY_EXPRESSION(GeExpression, >=)

#undef UNARY_EXPRESSION
#undef BINARY_EXPRESSION

/// Gives the location, with its new value.
class AssignExpression final : public BinaryExpression {
public:
    AssignExpression(ExpressionPtr left, ExpressionPtr right, ExpressionParser* parser)
        : BinaryExpression(std::move(left), std::move(right)),
          m_parser(parser)
    {
    }

protected:
    QString symbol() const override { return QStringLiteral("="); }
    ExpressionType apply(const ExpressionType& left, const ExpressionType& right) const override;

private:
    ExpressionParser* m_parser;
};

/// An element of an array, or what a pointer with an index points at; `*p` is `p[0]`.
class LeftSquareBracketExpression final : public BinaryExpression {
public:
    LeftSquareBracketExpression(ExpressionPtr left, ExpressionPtr right, ExpressionParser* parser)
        : BinaryExpression(std::move(left), std::move(right)),
          m_parser(parser)
    {
    }
    QString dump() const override { return left()->dump() + u'[' + right()->dump() + u']'; }

protected:
    QString symbol() const override { return QStringLiteral("["); }
    ExpressionType apply(const ExpressionType& left, const ExpressionType& right) const override;

private:
    ExpressionParser* m_parser;
};

/// A field of a structure, or of one that is pointed at; "." and "->" are the same.
class DotExpression final : public BinaryExpression {
public:
    DotExpression(ExpressionPtr left, ExpressionPtr right, ExpressionParser* parser)
        : BinaryExpression(std::move(left), std::move(right)),
          m_parser(parser)
    {
    }
    ExpressionType evaluate() const override;
    QString dump() const override { return left()->dump() + u'.' + right()->dump(); }

protected:
    QString symbol() const override { return QStringLiteral("."); }
    ExpressionType apply(const ExpressionType& left, const ExpressionType& right) const override;

private:
    ExpressionParser* m_parser;
};
