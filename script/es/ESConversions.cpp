// Conversions between the types of values, and what operators make of them.

#include "script/es/ESContext.h"
#include "script/es/ESLexer.h"

#include <cmath>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

/// Modulo 2 to the 32, of a number without its fraction.
quint32 modulo32(double number)
{
    constexpr double Modulus = 4294967296.0;
    if (!std::isfinite(number))
        return 0;
    const double rest = std::fmod(std::trunc(number), Modulus);
    return static_cast<quint32>(static_cast<qint64>(rest));
}

double numberOfText(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return NaN;
    bool valid = false;
    double value = 0;
    if (trimmed.startsWith(u"0x"_s, Qt::CaseInsensitive))
        value = double(trimmed.mid(2).toULong(&valid, 16));
    else
        value = trimmed.toString().toDouble(&valid);
    return valid ? value : NaN;
}

} // namespace

QStringView ESContext::viewOf(const ESValue& string)
{
    return string.is(ESValue::String) ? QStringView(string.string->text) : string.text->view();
}

bool ESContext::toBoolean(const ESValue& value)
{
    switch (value.tag) {
    case ESValue::Undefined:
    case ESValue::Null: return false;
    case ESValue::Boolean: return value.number != 0;
    case ESValue::Number: return value.number != 0 && !std::isnan(value.number);
    case ESValue::String:
    case ESValue::OwnedString: return !viewOf(value).isEmpty();
    case ESValue::Object: return true;
    default: throw ESFatalError(u"bad type in toBoolean"_s);
    }
}

double ESContext::hardToNumber(const ESValue& value)
{
    switch (value.tag) {
    case ESValue::Undefined: return NaN;
    case ESValue::Null: return 0;
    case ESValue::Boolean:
    case ESValue::Number: return value.number;
    case ESValue::String:
    case ESValue::OwnedString: return numberOfText(viewOf(value));
    case ESValue::Object: return toNumber(toPrimitive(value, ESClass::NumberFirst));
    default: throw ESFatalError(u"bad type in toNumber"_s);
    }
}

qint32 ESContext::toInt32(double number)
{
    const auto whole = static_cast<qint32>(modulo32(number));
    return whole;
}

quint32 ESContext::toUint32(double number) { return modulo32(number); }

double ESContext::toInteger(double number)
{
    if (std::isnan(number))
        return 0;
    return std::isinf(number) ? number : std::trunc(number);
}

ESString* ESContext::numberName(double number)
{
    if (number >= 0 && number < 2147483647.0 && double(static_cast<int>(number)) == number)
        return ESStringPool::number(static_cast<int>(number));
    return ESStringPool::intern(numberText(number, 10));
}

QString ESContext::numberText(double number, int radix)
{
    // The bounds of a signed 64-bit number.
    constexpr double Limit = 9223372036854775808.0;
    constexpr int SignificantDigits = 6;
    if (std::isnan(number))
        return u"NaN"_s;
    if (std::isinf(number))
        return number > 0 ? u"Infinity"_s : u"-Infinity"_s;
    if (number == 0)
        return u"0"_s;
    if (std::trunc(number) != number || std::fabs(number) >= Limit)
        return QString::number(number, 'g', SignificantDigits);
    const auto whole = static_cast<qint64>(number);
    return radix == 10 ? QString::number(whole) : QString::number(quint64(whole), radix);
}

QString ESContext::toString(const ESValue& value, int radix)
{
    switch (value.tag) {
    case ESValue::Undefined: return u"undefined"_s;
    case ESValue::Null: return u"null"_s;
    case ESValue::Boolean: return value.number != 0 ? u"true"_s : u"false"_s;
    case ESValue::Number: return numberText(value.number, radix);
    case ESValue::String: return value.string->text;
    case ESValue::OwnedString: return value.text->view().toString();
    case ESValue::Object: return toString(toPrimitive(value, ESClass::StringFirst), radix);
    default: throw ESFatalError(u"unknown type in toString"_s);
    }
}

ESString* ESContext::toEString(const ESValue& value)
{
    if (value.is(ESValue::String))
        return value.string;
    if (value.isNumber())
        return numberName(value.number);
    return ESStringPool::intern(toString(value));
}

ESValue ESContext::toPrimitive(const ESValue& value, int hint)
{
    if (!value.isObject())
        return value;
    ESObject* const object = value.object;
    if (object == m_global)
        return object->primitive;
    const bool isDate = object->objectClass == m_dateClass.get();
    const bool stringFirst =
        hint == ESClass::StringFirst || (hint == ESClass::NoPreference && isDate);
    static ESString* const valueOf = ESStringPool::intern(u"valueOf"_s);
    static ESString* const toStringName = ESStringPool::intern(u"toString"_s);
    ESString* const order[] = {stringFirst ? toStringName : valueOf,
                               stringFirst ? valueOf : toStringName};
    for (ESString* name : order) {
        const ESValue method = object->objectClass->get(this, object, name);
        if (!method.isObject() || !method.object->isCallable())
            continue;
        const ESValue result = call(method.object, object, 0, nullptr);
        if (!result.isObject() && !result.is(ESValue::Undefined))
            return result;
    }
    throwTypeError(u"type error: no default value"_s);
}

ESObject* ESContext::hardToObject(const ESValue& value)
{
    switch (value.tag) {
    case ESValue::Undefined: throwTypeError(u"can't convert undefined to an object"_s);
    case ESValue::Null: throwTypeError(u"can't convert null to an object"_s);
    case ESValue::Boolean: return mkobj(m_booleanPrototype, m_booleanClass.get(), value);
    case ESValue::Number: return mkobj(m_numberPrototype, m_numberClass.get(), value);
    case ESValue::String:
    case ESValue::OwnedString: return mkobj(m_stringPrototype, m_stringClass.get(), value);
    case ESValue::Object: return value.object;
    default: throw ESFatalError(u"unknown type in toObject"_s);
    }
}

// Operators

bool ESContext::identical(const ESValue& left, const ESValue& right)
{
    if (left.isString() && right.isString())
        return (left.tag == right.tag && left.string == right.string)
            || viewOf(left) == viewOf(right);
    if (left.tag != right.tag)
        return false;
    if (left.isNothing())
        return true;
    return left.isObject() ? left.object == right.object : left.number == right.number;
}

bool ESContext::equal(const ESValue& left, const ESValue& right)
{
    if (left.tag == right.tag || (left.isString() && right.isString()))
        return identical(left, right);
    if (left.isNothing() && right.isNothing())
        return true;
    if (left.isNothing() || right.isNothing())
        return false;
    if (left.is(ESValue::Boolean))
        return equal(ESValue(left.number), right);
    if (right.is(ESValue::Boolean))
        return equal(left, ESValue(right.number));
    if (left.isObject())
        return equal(toPrimitive(left, ESClass::NoPreference), right);
    if (right.isObject())
        return equal(left, toPrimitive(right, ESClass::NoPreference));
    return toNumber(left) == toNumber(right);
}

ESValue ESContext::add(const ESValue& leftValue, const ESValue& rightValue)
{
    const ESValue left = toPrimitive(leftValue, ESClass::NoPreference);
    const ESValue right = toPrimitive(rightValue, ESClass::NoPreference);
    if (!left.isString() && !right.isString())
        return toNumber(left) + toNumber(right);
    const QString rightText = right.isString() ? QString() : toString(right);
    const QStringView rightView = right.isString() ? viewOf(right) : QStringView(rightText);
    if (left.is(ESValue::OwnedString)) {
        // The right text may lie in the buffer that grows.
        if (right.is(ESValue::OwnedString) && right.text->buffer == left.text->buffer)
            return ESValue(m_texts.append(*left.text, rightView.toString()));
        return ESValue(m_texts.append(*left.text, rightView));
    }
    const QString leftText = left.isString() ? QString() : toString(left);
    const QStringView leftView = left.isString() ? viewOf(left) : QStringView(leftText);
    return ESValue(m_texts.concatenate(leftView, rightView));
}

bool ESContext::less(const ESValue& leftValue, const ESValue& rightValue, bool orEqual)
{
    const ESValue left = toPrimitive(leftValue, ESClass::NumberFirst);
    const ESValue right = toPrimitive(rightValue, ESClass::NumberFirst);
    if (left.isString() && right.isString()) {
        const int order = viewOf(left).compare(viewOf(right));
        return orEqual ? order <= 0 : order < 0;
    }
    const double a = toNumber(left);
    const double b = toNumber(right);
    return orEqual ? a <= b : a < b;
}
