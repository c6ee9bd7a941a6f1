#include "debugger/expressions/MarkerType.h"

#include <tuple>

QString DebugMarkerType::getValueAsString()
{
    const auto hexadecimal = [](quint64 value) {
        return QStringLiteral("0x%1").arg(value, 4, 16, QLatin1Char('0'));
    };
    switch (m_kind) {
    case Register: return u'@' + registerNumberToName(m_base);
    case Constant: return hexadecimal(constant());
    default: return hexadecimal(address());
    }
}

bool DebugMarkerType::equiv(const MarkerType* other) const
{
    const auto* it = dynamic_cast<const DebugMarkerType*>(other);
    const auto fields = [](const DebugMarkerType& marker) {
        return std::tie(marker.m_kind, marker.m_littleEndian, marker.m_registerLength,
                        marker.m_base, marker.m_upperBase, marker.m_offset, marker.m_size,
                        marker.m_bitOffset, marker.m_bitSize);
    };
    return it != nullptr && fields(*this) == fields(*it);
}

bool DebugMarkerType::lt(const MarkerType* other) const
{
    const auto* it = dynamic_cast<const DebugMarkerType*>(other);
    if (it == nullptr)
        return false;
    if (m_kind != it->m_kind)
        return m_kind < it->m_kind;
    if (m_kind == Register)
        return registerNumberLT(m_base, it->m_base);
    return std::tie(m_base, m_offset) < std::tie(it->m_base, it->m_offset);
}
