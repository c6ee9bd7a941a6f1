#include "projects/xml/XmlRepetition.h"

#include "base/HexString.h"

#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Macros for index_ap + k are there for k from 0 to this.
constexpr int LargestOffset = 127;

qint64 number(const QString& text)
{
    return static_cast<quint32>(std::strtoul(text.toLatin1().constData(), nullptr, 0));
}

/// Negative numbers have the 32 bits of their two's complement.
QString hexadecimal(qint64 number) { return toHexString(static_cast<quint32>(number)); }

} // namespace

std::optional<XmlRepetition> XmlRepetition::fromAttributes(const Attributes& attributes)
{
    if (attributes.index.isNull() || attributes.start.isNull() || attributes.end.isNull()
        || attributes.incr.isNull())
        return {};
    XmlRepetition result;
    result.m_index = attributes.index;
    result.m_at = number(attributes.start);
    result.m_end = number(attributes.end);
    result.m_increment = number(attributes.incr);
    if (!attributes.add.isNull())
        result.m_base = number(attributes.add);
    else if (!attributes.sub.isNull())
        result.m_base = -number(attributes.sub);
    if (!attributes.mul.isNull())
        result.m_factor = number(attributes.mul);
    return result;
}

void XmlRepetition::addMacros(MacroMap& macros) const
{
    const auto linear =
        static_cast<qint64>(static_cast<quint64>(m_at) * static_cast<quint64>(m_factor)) + m_base;
    macros.insert(m_index, QString::number(m_at));
    macros.insert(m_index + u"_alpha"_s, QString(QLatin1Char(static_cast<char>('A' + m_at))));
    macros.insert(m_index + u"_hex"_s, hexadecimal(m_at));
    macros.insert(m_index + u"_ap"_s, QString::number(linear));
    macros.insert(m_index + u"_ap_hex"_s, hexadecimal(linear));
    for (int k = 0; k <= LargestOffset; ++k) {
        const QString offset = u"_plus_"_s + QString::number(k);
        macros.insert(m_index + u"_ap"_s + offset, QString::number(linear + k));
        macros.insert(m_index + u"_ap_hex"_s + offset, hexadecimal(linear + k));
    }
}
