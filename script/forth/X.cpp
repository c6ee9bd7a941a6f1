#include "script/forth/X.h"

#include "script/forth/PCFA.h"
#include "script/forth/PMemory.h"

#include <QLocale>

#include <cmath>

void X::invalidCombination()
{
    throw ForthException(ForthError::InvalidArgument,
                         QStringLiteral("invalid operand combination"));
}

void X::wrongKind(Kind wanted)
{
    switch (wanted) {
    case Kind::DataAddress:
        throw ForthException(ForthError::InvalidAddress, QStringLiteral("not a data address"));
    case Kind::CodeAddress: throw ForthException(ForthError::InvalidAddress);
    case Kind::Literal:
        throw ForthException(ForthError::InvalidArgument,
                             QStringLiteral("unrelocated literal required"));
    case Kind::Float:
        throw ForthException(ForthError::InvalidArgument, QStringLiteral("float required"));
    case Kind::String: break;
    }
    throw ForthException(ForthError::InvalidArgument, QStringLiteral("string required"));
}

PCFA* X::getCFA() const
{
    if (!is_code_addr())
        wrongKind(Kind::CodeAddress);
    return m_code->getCFA();
}

X X::fetch() const { return segment()->fetch(m_integer); }

void X::store(const X& value) const { segment()->store(m_integer, value); }

X X::relocatedSum(const X& a, const X& b)
{
    const bool addressFirst = a.is_data_addr() && b.is_lit();
    if (!addressFirst && !(a.is_lit() && b.is_data_addr()))
        invalidCombination();
    return X(bits(a) + bits(b), addressFirst ? a.m_segment : b.m_segment);
}

X X::relocatedDifference(const X& a, const X& b)
{
    if (a.is_data_addr() && b.is_lit())
        return X(bits(a) - bits(b), a.m_segment);
    if (a.is_data_addr() && b.is_data_addr() && a.m_segment == b.m_segment)
        return wrapped(bits(a) - bits(b));
    invalidCombination();
}

X operator/(const X& a, const X& b)
{
    X::demandLiterals(a, b);
    if (b.m_integer == 0)
        throw ForthException(ForthError::DivideByZero);
    if (b.m_integer == -1) // the one quotient that overflows is among these
        return -a;
    const qint64 quotient = a.m_integer / b.m_integer;
    const bool inexact = a.m_integer % b.m_integer != 0;
    return X(quotient - (inexact && (a.m_integer < 0) != (b.m_integer < 0) ? 1 : 0));
}

X operator%(const X& a, const X& b) { return a - a / b * b; }

bool X::same(const X& a, const X& b)
{
    if (a.m_kind != b.m_kind)
        return false;
    switch (a.m_kind) {
    case Kind::DataAddress: return a.m_segment == b.m_segment && a.m_integer == b.m_integer;
    case Kind::CodeAddress: return a.m_code == b.m_code;
    case Kind::Literal: return a.m_integer == b.m_integer;
    case Kind::Float: return a.flt() == b.flt();
    case Kind::String: break;
    }
    return a.m_text->text == b.m_text->text;
}

std::partial_ordering X::order(const X& a, const X& b)
{
    if (a.m_kind != b.m_kind || a.is_code_addr()
        || (a.is_data_addr() && a.m_segment != b.m_segment))
        invalidCombination();
    if (a.isFloat())
        return a.flt() <=> b.flt();
    if (a.isString())
        return a.m_text->text.compare(b.m_text->text) <=> 0;
    return a.m_integer <=> b.m_integer;
}

bool X::below(const X& a, const X& b)
{
    if (a.is_lit() && b.is_lit())
        return bits(a) < bits(b);
    return a < b;
}

QString X::toString() const
{
    switch (m_kind) {
    case Kind::DataAddress: return m_segment->name() + u'+' + QString::number(m_integer);
    case Kind::CodeAddress: return m_code->name();
    case Kind::Literal: return QString::number(m_integer);
    case Kind::String: return m_text->text;
    case Kind::Float: break;
    }
    const double value = flt();
    const QString text = QString::number(value, 'g', QLocale::FloatingPointShortest);
    const bool bare = std::isfinite(value) && !text.contains(u'.') && !text.contains(u'e');
    return bare ? text + u'.' : text;
}
