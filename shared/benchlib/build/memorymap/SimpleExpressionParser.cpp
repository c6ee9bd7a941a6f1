#include "build/memorymap/SimpleExpressionParser.h"

#include <QByteArrayView>

#include <array>
#include <cctype>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string_view>

namespace {

struct Failure { };

/// A number, or a truth value of 0 or 1.
struct Value {
    qint64 number;
    bool truth = false;
};

enum class Operator {
    LogicalOr,
    LogicalAnd,
    Or,
    Xor,
    And,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    ShiftLeft,
    ShiftRight,
    Add,
    Subtract,
    Multiply,
    Divide,
    Modulo,
    Refused, ///< goes on with the expression, but isn't for constants
};

struct OperatorText {
    std::string_view text;
    Operator code;
    int precedence;
};

/// In the order in which they are tried: a longer one before its beginning.
constexpr OperatorText Operators[] = {
    {"<<=", Operator::Refused, 0},   {">>>", Operator::Refused, 0},
    {">>=", Operator::Refused, 0},   {"*=", Operator::Refused, 0},
    {"/=", Operator::Refused, 0},    {"%=", Operator::Refused, 0},
    {"+=", Operator::Refused, 0},    {"-=", Operator::Refused, 0},
    {"^=", Operator::Refused, 0},    {"&=", Operator::Refused, 0},
    {"|=", Operator::Refused, 0},    {"->", Operator::Refused, 0},
    {"++", Operator::Refused, 0},    {"--", Operator::Refused, 0},
    {"||", Operator::LogicalOr, 0},  {"&&", Operator::LogicalAnd, 1},
    {"|", Operator::Or, 2},          {"^", Operator::Xor, 3},
    {"&", Operator::And, 4},         {"==", Operator::Equal, 5},
    {"!=", Operator::NotEqual, 5},   {"<<", Operator::ShiftLeft, 7},
    {">>", Operator::ShiftRight, 7}, {"<=", Operator::LessEqual, 6},
    {"<", Operator::Less, 6},        {">=", Operator::GreaterEqual, 6},
    {">", Operator::Greater, 6},     {"+", Operator::Add, 8},
    {"-", Operator::Subtract, 8},    {"*", Operator::Multiply, 9},
    {"/", Operator::Divide, 9},      {"%", Operator::Modulo, 9},
    {"=", Operator::Refused, 0},     {",", Operator::Refused, 0},
    {"?", Operator::Refused, 0},     {"[", Operator::Refused, 0},
    {".", Operator::Refused, 0},     {"(", Operator::Refused, 0},
};
constexpr int LowestPrecedence = 0;
constexpr int HighestPrecedence = 9;

/// What may stand behind an expression without going on with it.
constexpr std::string_view Followers = ";:)]{}!~@\"";

quint64 bits(qint64 number) { return static_cast<quint64>(number); }

qint64 divided(qint64 left, qint64 right, bool remainder)
{
    if (right == 0)
        throw Failure();
    // The one quotient that doesn't fit wraps around, as the other operations do.
    if (right == -1)
        return remainder ? 0 : static_cast<qint64>(-bits(left));
    return remainder ? left % right : left / right;
}

qint64 shifted(qint64 left, qint64 count, bool toTheLeft)
{
    constexpr qint64 Bits = std::numeric_limits<quint64>::digits;
    if (count < 0 || count >= Bits)
        return !toTheLeft && left < 0 ? -1 : 0;
    return toTheLeft ? static_cast<qint64>(bits(left) << count) : left >> count;
}

Value apply(Operator code, Value left, Value right)
{
    const qint64 a = left.number;
    const qint64 b = right.number;
    switch (code) {
    case Operator::LogicalOr: return {a != 0 || b != 0, true};
    case Operator::LogicalAnd: return {a != 0 && b != 0, true};
    case Operator::Equal: return {a == b, true};
    case Operator::NotEqual: return {a != b, true};
    case Operator::Add:
        return left.truth ? Value{a + b != 0, true} : Value{static_cast<qint64>(bits(a) + bits(b))};
    default: break;
    }
    if (left.truth)
        throw Failure();
    switch (code) {
    case Operator::Or: return {a | b};
    case Operator::Xor: return {a ^ b};
    case Operator::And: return {a & b};
    case Operator::Less: return {a < b, true};
    case Operator::LessEqual: return {a <= b, true};
    case Operator::Greater: return {a > b, true};
    case Operator::GreaterEqual: return {a >= b, true};
    case Operator::ShiftLeft: return {shifted(a, b, true)};
    case Operator::ShiftRight: return {shifted(a, b, false)};
    case Operator::Subtract: return {static_cast<qint64>(bits(a) - bits(b))};
    case Operator::Multiply: return {static_cast<qint64>(bits(a) * bits(b))};
    case Operator::Divide: return {divided(a, b, false)};
    case Operator::Modulo: return {divided(a, b, true)};
    default: throw Failure();
    }
}

class Parser {
public:
    explicit Parser(const char* text) : m_rest(text) { }

    Value parse()
    {
        const Value value = binary(LowestPrecedence);
        if (!m_rest.empty() && !isWord(m_rest[0]) && Followers.find(m_rest[0]) == Followers.npos)
            throw Failure();
        return value;
    }

private:
    /// Parentheses and signs within one another.
    static constexpr int MaximumDepth = 200;

    static bool isWord(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

    Value binary(int precedence)
    {
        if (precedence > HighestPrecedence)
            return operand();
        Value left = binary(precedence + 1);
        for (const OperatorText* found = nextOperator();
             found != nullptr && found->precedence == precedence; found = nextOperator()) {
            if (found->code == Operator::Refused)
                throw Failure();
            m_rest.remove_prefix(found->text.size());
            left = apply(found->code, left, binary(precedence + 1));
        }
        return left;
    }

    const OperatorText* nextOperator()
    {
        skipBlanks();
        for (const OperatorText& entry : Operators)
            if (m_rest.starts_with(entry.text))
                return &entry;
        return nullptr;
    }

    Value operand()
    {
        skipBlanks();
        if (++m_depth > MaximumDepth || m_rest.empty())
            throw Failure();
        const Value value =
            std::isdigit(static_cast<unsigned char>(m_rest[0])) ? number() : prefixed();
        --m_depth;
        return value;
    }

    Value prefixed()
    {
        const char prefix = m_rest[0];
        if (m_rest.starts_with("++") || m_rest.starts_with("--"))
            throw Failure();
        m_rest.remove_prefix(1);
        const Value value = prefix == '(' ? binary(LowestPrecedence) : operand();
        switch (prefix) {
        case '+': return value;
        case '!': return {value.number == 0, true};
        case '-':
        case '~':
            if (value.truth)
                throw Failure();
            return {prefix == '~' ? ~value.number : static_cast<qint64>(-bits(value.number))};
        case '(':
            skipBlanks();
            if (!m_rest.starts_with(')'))
                throw Failure();
            m_rest.remove_prefix(1);
            return value;
        default: throw Failure();
        }
    }

    Value number()
    {
        const bool hex = m_rest.starts_with("0x");
        const char* begin = m_rest.data() + (hex ? 2 : 0);
        char* end = nullptr;
        // The text is the end of a C string. A digit is there: strtoull takes no sign or blank.
        quint64 value = 0;
        if (!hex || std::isxdigit(static_cast<unsigned char>(*begin)))
            value = std::strtoull(begin, &end, hex ? 16 : 10);
        const char* behind = end != nullptr ? end : begin;
        m_rest.remove_prefix(static_cast<std::size_t>(behind - m_rest.data()));
        return {static_cast<qint64>(value)};
    }

    void skipBlanks()
    {
        while (!m_rest.empty() && std::isspace(static_cast<unsigned char>(m_rest[0])))
            m_rest.remove_prefix(1);
    }

    std::string_view m_rest;
    int m_depth = 0;
};

} // namespace

SimpleExpressionParser& SimpleExpressionParser::instance()
{
    static SimpleExpressionParser parser;
    return parser;
}

quint64 SimpleExpressionParser::getUInteger(const char* text, bool& ok) const
{
    ok = false;
    try {
        const Value value = Parser(text != nullptr ? text : "").parse();
        ok = true;
        return bits(value.number);
    } catch (const Failure&) {
        return 0;
    }
}
