#include "debugger/expressions/ExpressionType.h"
#include "debugger/expressions/ParserException.h"

#include <cmath>
#include <limits>

namespace {

using Value = ExpressionType;

constexpr const char* BadBinary = "unsupported binary numeric operation";
constexpr const char* BadUnary = "unsupported unary num operation";
constexpr const char* BadComparison = "unsupported comparison operation";

quint64 bits(qint64 value) { return static_cast<quint64>(value); }
qint64 number(quint64 value) { return static_cast<qint64>(value); }

qint64 quotient(qint64 left, qint64 right)
{
    // The one quotient that 64 bits don't hold wraps round.
    return right == -1 ? number(0 - bits(left)) : left / right;
}
qint64 remainder(qint64 left, qint64 right) { return right == -1 ? 0 : left % right; }

/// The same operation on the three kinds of numbers.
struct Arithmetic {
    qint64 (*onSigned)(qint64, qint64);
    quint64 (*onUnsigned)(quint64, quint64);
    double (*onFloating)(double, double); ///< null if there is none
};

constexpr Arithmetic Sum = {[](qint64 a, qint64 b) { return number(bits(a) + bits(b)); },
                            [](quint64 a, quint64 b) { return a + b; },
                            [](double a, double b) { return a + b; }};
constexpr Arithmetic Difference = {[](qint64 a, qint64 b) { return number(bits(a) - bits(b)); },
                                   [](quint64 a, quint64 b) { return a - b; },
                                   [](double a, double b) { return a - b; }};
constexpr Arithmetic Product = {[](qint64 a, qint64 b) { return number(bits(a) * bits(b)); },
                                [](quint64 a, quint64 b) { return a * b; },
                                [](double a, double b) { return a * b; }};
constexpr Arithmetic Quotient = {quotient, [](quint64 a, quint64 b) { return a / b; },
                                 [](double a, double b) { return a / b; }};
constexpr Arithmetic Remainder = {remainder, [](quint64 a, quint64 b) { return a % b; },
                                  [](double a, double b) { return std::fmod(a, b); }};
constexpr Arithmetic And = {[](qint64 a, qint64 b) { return a & b; },
                            [](quint64 a, quint64 b) { return a & b; }, nullptr};
constexpr Arithmetic Or = {[](qint64 a, qint64 b) { return a | b; },
                           [](quint64 a, quint64 b) { return a | b; }, nullptr};
constexpr Arithmetic Xor = {[](qint64 a, qint64 b) { return a ^ b; },
                            [](quint64 a, quint64 b) { return a ^ b; }, nullptr};

bool isScalar(const Value& value)
{
    return value.isNumberType() || value.getType() == Value::Boolean;
}

bool isTrue(const Value& value)
{
    return value.getType() == Value::Floating ? value.getFloating() != 0 : value.getUInteger() != 0;
}

bool isZero(const Value& value, bool asFloating)
{
    return asFloating ? value.getFloating() == 0 : value.getInteger() == 0;
}

Value apply(const Arithmetic& operation, const Value& left, const Value& right)
{
    const unsigned size = left.getSizeInBytes();
    switch (left.getType()) {
    case Value::SignedInteger:
        return {operation.onSigned(left.getInteger(), right.getInteger()), size, 0};
    case Value::UnsignedInteger:
        return {operation.onUnsigned(left.getUInteger(), bits(right.getInteger())), size, 0};
    case Value::Floating:
        if (operation.onFloating != nullptr)
            return {operation.onFloating(left.getFloating(), right.getFloating()), size};
        break;
    default: break;
    }
    throw ParserException(BadBinary);
}

Value calculate(const Arithmetic& operation, const Value& leftPlace, const Value& rightPlace)
{
    const Value left = leftPlace.resolved();
    const Value right = rightPlace.resolved();
    if (!isScalar(right))
        throw ParserException(BadBinary);
    return apply(operation, left, right);
}

Value divide(const Arithmetic& operation, const Value& leftPlace, const Value& rightPlace)
{
    const Value left = leftPlace.resolved();
    const Value right = rightPlace.resolved();
    if (!left.isNumberType() || !isScalar(right))
        throw ParserException(BadBinary);
    if (isZero(right, left.getType() == Value::Floating))
        throw ParserException("divide by zero");
    return apply(operation, left, right);
}

Value shift(const Value& leftPlace, const Value& rightPlace, bool toTheLeft)
{
    const Value left = leftPlace.resolved();
    const Value right = rightPlace.resolved();
    if (!left.isIntegerType())
        throw ParserException("can only shift numeric values");
    if (!right.isIntegerType())
        throw ParserException("integer shift value expected");
    constexpr qint64 Width = std::numeric_limits<quint64>::digits;
    const qint64 count = right.getInteger();
    const bool beyond = count < 0 || count >= Width;
    const unsigned size = left.getSizeInBytes();
    if (left.getType() == Value::UnsignedInteger) {
        const quint64 value = left.getUInteger();
        return {beyond ? quint64{0} : toTheLeft ? value << count : value >> count, size, 0};
    }
    const qint64 value = left.getInteger();
    if (beyond)
        return {!toTheLeft && value < 0 ? qint64{-1} : qint64{0}, size, 0};
    return {toTheLeft ? number(bits(value) << count) : value >> count, size, 0};
}

/// What a comparison asks of the order of its operands; unordered is a comparison with no number.
enum class Order { Less, Equal, Greater, Unordered };

template <typename T> Order orderOf(T left, T right)
{
    if (left < right)
        return Order::Less;
    if (left > right)
        return Order::Greater;
    return left == right ? Order::Equal : Order::Unordered;
}

/// `forEquality`: strings and booleans are equal or not, but have no order.
Order compare(const Value& leftPlace, const Value& rightPlace, bool forEquality)
{
    const Value left = leftPlace.resolved();
    const Value right = rightPlace.resolved();
    if (forEquality && left.getType() == Value::String && right.getType() == Value::String)
        return left.getString() == right.getString() ? Order::Equal : Order::Unordered;
    if (!isScalar(right))
        throw ParserException(BadComparison);
    switch (left.getType()) {
    case Value::SignedInteger: return orderOf(left.getInteger(), right.getInteger());
    case Value::UnsignedInteger:
        return orderOf(left.getUInteger(), static_cast<unsigned long long>(right.getInteger()));
    case Value::Floating: return orderOf(left.getFloating(), right.getFloating());
    case Value::Boolean:
        if (forEquality)
            return orderOf(left.getInteger(), right.getInteger());
        break;
    default: break;
    }
    throw ParserException(BadComparison);
}

Value combine(const Value& leftPlace, const Value& rightPlace, bool (*decide)(bool, bool))
{
    const Value left = leftPlace.resolved();
    const Value right = rightPlace.resolved();
    if (!isScalar(left) || !isScalar(right))
        throw ParserException(BadBinary);
    return Value(decide(isTrue(left), isTrue(right)));
}

} // namespace

Value operator+(const Value& left, const Value& right)
{
    const Value value = left.resolved();
    if (value.getType() != Value::Boolean)
        return calculate(Sum, value, right);
    const Value other = right.resolved();
    if (!isScalar(other))
        throw ParserException(BadBinary);
    const quint64 sum = value.getUInteger() + (other.getUInteger() & 0xFF);
    return Value(sum != 0);
}

Value operator-(const Value& left, const Value& right)
{
    return calculate(Difference, left, right);
}
Value operator*(const Value& left, const Value& right) { return calculate(Product, left, right); }
Value operator/(const Value& left, const Value& right) { return divide(Quotient, left, right); }
Value operator%(const Value& left, const Value& right) { return divide(Remainder, left, right); }
Value operator&(const Value& left, const Value& right) { return calculate(And, left, right); }
Value operator|(const Value& left, const Value& right) { return calculate(Or, left, right); }
Value operator^(const Value& left, const Value& right) { return calculate(Xor, left, right); }
Value operator<<(const Value& left, const Value& right) { return shift(left, right, true); }
Value operator>>(const Value& left, const Value& right) { return shift(left, right, false); }

Value operator&&(const Value& left, const Value& right)
{
    return combine(left, right, [](bool a, bool b) { return a && b; });
}

Value operator||(const Value& left, const Value& right)
{
    return combine(left, right, [](bool a, bool b) { return a || b; });
}

Value operator==(const Value& left, const Value& right)
{
    return Value(compare(left, right, true) == Order::Equal);
}

Value operator!=(const Value& left, const Value& right)
{
    return Value(compare(left, right, true) != Order::Equal);
}

Value operator<(const Value& left, const Value& right)
{
    return Value(compare(left, right, false) == Order::Less);
}

Value operator<=(const Value& left, const Value& right)
{
    const Order order = compare(left, right, false);
    return Value(order == Order::Less || order == Order::Equal);
}

Value operator>(const Value& left, const Value& right)
{
    return Value(compare(left, right, false) == Order::Greater);
}

Value operator>=(const Value& left, const Value& right)
{
    const Order order = compare(left, right, false);
    return Value(order == Order::Greater || order == Order::Equal);
}

Value operator-(const Value& operand)
{
    const Value value = operand.resolved();
    if (value.getType() == Value::Floating)
        return {-value.getFloating(), value.getSizeInBytes()};
    if (value.getType() == Value::UnsignedInteger)
        return {0 - value.getUInteger(), value.getSizeInBytes(), 0};
    if (value.getType() != Value::SignedInteger)
        throw ParserException(BadUnary);
    return {number(0 - bits(value.getInteger())), value.getSizeInBytes(), 0};
}

Value operator~(const Value& operand)
{
    const Value value = operand.resolved();
    if (!value.isIntegerType())
        throw ParserException(BadUnary);
    if (value.getType() == Value::UnsignedInteger)
        return {~value.getUInteger(), value.getSizeInBytes(), 0};
    return {~value.getInteger(), value.getSizeInBytes(), 0};
}

Value operator!(const Value& operand)
{
    const Value value = operand.resolved();
    if (!isScalar(value))
        throw ParserException(BadUnary);
    return Value(!isTrue(value));
}

Value ExpressionType::abs() const
{
    const Value value = resolved();
    if (!value.isNumberType())
        throw ParserException(BadUnary);
    if (value.m_type == Floating)
        return {std::fabs(value.getFloating()), value.m_size};
    return value.m_type == SignedInteger && value.getInteger() < 0 ? -value : value;
}
