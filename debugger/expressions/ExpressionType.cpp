#include "debugger/expressions/ExpressionType.h"

#include "debugger/expressions/MarkerType.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

namespace {

constexpr double Lowest64 = -9223372036854775808.0;
constexpr double Above64 = 9223372036854775808.0;

long long truncated(double value)
{
    if (std::isnan(value))
        return 0;
    if (value < Lowest64)
        return std::numeric_limits<long long>::min();
    if (value >= Above64)
        return std::numeric_limits<long long>::max();
    return static_cast<long long>(value);
}

bool isPrintable(uint character) { return character >= 0x20 && character < 0x7F; }

QString escaped(uint character)
{
    if (isPrintable(character))
        return QString(QChar(character));
    return QStringLiteral("\\u%1").arg(character, 4, 16, QLatin1Char('0'));
}

/// Whether a text is exactly one conversion of a floating number, so that it is safe to print with.
bool isFloatingFormat(const char* format)
{
    if (format == nullptr)
        return false;
    int conversions = 0;
    for (const char* at = format; *at != '\0'; ++at) {
        if (*at != '%')
            continue;
        if (at[1] == '%') {
            ++at;
            continue;
        }
        at += 1 + std::strspn(at + 1, "-+ #0");
        const std::size_t width = std::strspn(at, "0123456789");
        at += width;
        std::size_t precision = 0;
        if (*at == '.') {
            precision = std::strspn(at + 1, "0123456789");
            at += 1 + precision;
        }
        if (*at == '\0' || std::strchr("eEfFgGaA", *at) == nullptr || width > 2 || precision > 2)
            return false;
        ++conversions;
    }
    return conversions == 1;
}

QString formatted(double value, const char* format)
{
    char text[600]; // 309 digits, 99 places and what stands around them
    std::snprintf(text, sizeof text, isFloatingFormat(format) ? format : "%g", value);
    return QString::fromUtf8(text);
}

struct Radix {
    int radix;
    const char* prefix;
    unsigned bitsOfDigit;
};
constexpr Radix Radices[] = {{16, "0x", 4}, {2, "0b", 1}, {8, "0", 3}};

const Radix* findRadix(int radix)
{
    for (const Radix& it : Radices)
        if (it.radix == radix)
            return &it;
    return nullptr;
}

quint64 numberOf(QString text, int radix)
{
    text = text.trimmed();
    const bool negative = text.startsWith(u'-');
    if (negative)
        text.remove(0, 1);
    if (const Radix* it = findRadix(radix); it != nullptr && radix != 8)
        if (text.startsWith(QLatin1String(it->prefix), Qt::CaseInsensitive))
            text.remove(0, 2);
    const quint64 value = text.toULongLong(nullptr, radix);
    return negative ? 0 - value : value;
}

} // namespace

ExpressionType::ExpressionType(bool value) : m_type(Boolean), m_bits64(value), m_size(1) { }

ExpressionType::ExpressionType(long long value, unsigned size, unsigned bits)
    : m_type(SignedInteger),
      m_bits64(static_cast<quint64>(value)),
      m_size(size),
      m_bits(bits)
{
}

ExpressionType::ExpressionType(unsigned long long value, unsigned size, unsigned bits)
    : m_type(UnsignedInteger),
      m_bits64(value),
      m_size(size),
      m_bits(bits)
{
}

ExpressionType::ExpressionType(double value, unsigned size)
    : m_type(Floating),
      m_bits64(std::bit_cast<quint64>(value)),
      m_size(size)
{
}

ExpressionType::ExpressionType(const char* text, int length)
    : m_type(String),
      m_size(0),
      m_string(QString::fromLatin1(
          text, static_cast<qsizetype>(strnlen(text, static_cast<std::size_t>(length)))))
{
}

ExpressionType::ExpressionType(MarkerType* marker) : m_type(Location), m_marker(marker), m_size(0)
{
}

ExpressionType::ExpressionType(const ExpressionType& model, const QString& text, int radix)
    : m_type(model.m_type),
      m_size(model.m_size),
      m_bits(model.m_bits)
{
    const bool isRadix = radix >= 2 && radix <= 36;
    switch (m_type) {
    case Boolean: m_bits64 = text.trimmed() == u"true"; break;
    case SignedInteger:
    case UnsignedInteger: m_bits64 = numberOf(text, isRadix ? radix : 10); break;
    case Floating:
        if (findRadix(radix) == nullptr)
            m_bits64 = std::bit_cast<quint64>(text.trimmed().toDouble());
        else if (m_size == sizeof(float))
            m_bits64 = std::bit_cast<quint64>(static_cast<double>(
                std::bit_cast<float>(static_cast<quint32>(numberOf(text, radix)))));
        else
            m_bits64 = numberOf(text, radix);
        break;
    case String: m_string = text; break;
    default: break;
    }
}

void ExpressionType::setType(Type type)
{
    if (type == Floating && (isIntegerType() || m_type == Boolean))
        m_bits64 = std::bit_cast<quint64>(static_cast<double>(getUInteger()));
    m_type = type;
}

quint64 ExpressionType::floatingBits() const
{
    if (m_size != sizeof(float))
        return m_bits64;
    return std::bit_cast<quint32>(static_cast<float>(std::bit_cast<double>(m_bits64)));
}

unsigned long long ExpressionType::getUInteger() const
{
    if (m_type == Floating)
        return floatingBits();
    switch (m_size) {
    case 1: return static_cast<quint8>(m_bits64);
    case 2: return static_cast<quint16>(m_bits64);
    case 4: return static_cast<quint32>(m_bits64);
    default: return m_bits64;
    }
}

long long ExpressionType::getInteger() const
{
    if (m_type == Floating)
        return truncated(getFloating());
    if (m_type == Boolean)
        return getBoolean();
    switch (m_size) {
    case 1: return static_cast<qint8>(m_bits64);
    case 2: return static_cast<qint16>(m_bits64);
    case 4: return static_cast<qint32>(m_bits64);
    default: return static_cast<qint64>(m_bits64);
    }
}

double ExpressionType::getFloating() const
{
    switch (m_type) {
    case Floating: return std::bit_cast<double>(m_bits64);
    case SignedInteger: return static_cast<double>(getInteger());
    default: return static_cast<double>(getUInteger());
    }
}

bool ExpressionType::equiv(const ExpressionType& other) const
{
    if (m_type != other.m_type)
        return false;
    switch (m_type) {
    case Boolean: return getBoolean() == other.getBoolean();
    case SignedInteger:
    case UnsignedInteger: return m_size == other.m_size && getUInteger() == other.getUInteger();
    case String: return m_string == other.m_string;
    case Location: return m_marker->equiv(other.m_marker.get());
    case Floating: return m_bits64 == other.m_bits64 || getFloating() == other.getFloating();
    case Undefined: return true;
    }
    return false;
}

ExpressionType ExpressionType::resolved() const
{
    return m_type == Location ? m_marker->getValue() : *this;
}

QString ExpressionType::TypeToString(bool bytes) const
{
    struct Name {
        Type type;
        unsigned size;
        const char* text;
    };
    static constexpr Name names[] = {
        {SignedInteger, 1, "char"},
        {SignedInteger, 2, "short"},
        {SignedInteger, 4, "int"},
        {SignedInteger, 8, "long long"},
        {UnsignedInteger, 1, "unsigned char"},
        {UnsignedInteger, 2, "unsigned short"},
        {UnsignedInteger, 4, "unsigned int"},
        {UnsignedInteger, 8, "unsigned long long"},
        {Floating, 4, "float"},
        {Floating, 8, "double"},
    };
    switch (m_type) {
    case Boolean: return QStringLiteral("boolean");
    case String: return QStringLiteral("string");
    case Location: return QStringLiteral("marker");
    default: break;
    }
    if (bytes && m_type == UnsignedInteger && m_size == 1)
        return QStringLiteral("byte");
    for (const Name& it : names)
        if (it.type == m_type && it.size == m_size)
            return QString::fromLatin1(it.text);
    return QStringLiteral("unknown");
}

/// All digits of the size, or of a bit-field's width, with the prefix of the radix.
QString ExpressionType::digits(int radix) const
{
    const Radix* it = findRadix(radix);
    if (it == nullptr)
        return QString();
    const unsigned bytes = m_size >= 1 && m_size <= 8 ? m_size : 8;
    const unsigned bits = m_bits > 0 && m_bits <= 64 ? m_bits : bytes * 8;
    quint64 value = m_type == Floating ? floatingBits() : m_bits64;
    if (bits < 64)
        value &= (quint64{1} << bits) - 1;
    const unsigned width = (bits + it->bitsOfDigit - 1) / it->bitsOfDigit;
    return QLatin1String(it->prefix)
        + QString::number(value, radix).rightJustified(static_cast<qsizetype>(width), u'0');
}

/// The bytes as characters, the highest first, as a character constant of C has them.
QString ExpressionType::characters() const
{
    const unsigned bytes = m_size >= 1 && m_size <= 8 ? m_size : 8;
    QString text;
    for (unsigned i = bytes; i-- > 0;)
        text += escaped(static_cast<uint>(m_bits64 >> i * 8 & 0xFF));
    return u'\'' + text + u'\'';
}

QString ExpressionType::toStr(int radix, bool isUnsigned, bool ascii, const char* format) const
{
    switch (m_type) {
    case Boolean: return getBoolean() ? QStringLiteral("true") : QStringLiteral("false");
    case String: {
        QString text;
        for (const QChar it : m_string)
            text += escaped(it.unicode());
        return text;
    }
    case Location: return m_marker->getValueAsString();
    case Undefined: return QString();
    case Floating: {
        const QString bits = digits(radix);
        return bits.isEmpty() ? formatted(getFloating(), format) : bits;
    }
    default: break;
    }
    if (ascii)
        return characters();
    const QString text = digits(radix);
    if (!text.isEmpty())
        return text;
    return m_type == SignedInteger && !isUnsigned ? QString::number(getInteger())
                                                  : QString::number(getUInteger());
}
