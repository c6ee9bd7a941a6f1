#include "debugger/breakpoints/TOBFBreakpoint.h"

namespace {

QString hexadecimal(unsigned value) { return QStringLiteral("0x") + QString::number(value, 16); }

} // namespace

QString TOBFBreakpoint::getDescription()
{
    const unsigned first = m_breakpoint->address;
    if (m_breakpoint->length < 2)
        return hexadecimal(first);
    return hexadecimal(first) + u'-' + hexadecimal(first + m_breakpoint->length - 1);
}

QString TOBFBreakpoint::getAddress()
{
    if (m_breakpoint->isRegister)
        return QStringLiteral("@r") + QString::number(m_breakpoint->address);
    return hexadecimal(m_breakpoint->address);
}
