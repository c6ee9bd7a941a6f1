#include "debugger/breakpoints/TOBFBreakpoint.h"

namespace {

QString hexadecimal(unsigned value) { return QStringLiteral("0x") + QString::number(value, 16); }

} // namespace

QString TOBFBreakpoint::getDescription()
{
    const unsigned first = breakpoint()->address;
    if (breakpoint()->length < 2)
        return hexadecimal(first);
    return hexadecimal(first) + u'-' + hexadecimal(first + breakpoint()->length - 1);
}

QString TOBFBreakpoint::getAddress()
{
    if (breakpoint()->isRegister)
        return QStringLiteral("@r") + QString::number(breakpoint()->address);
    return hexadecimal(breakpoint()->address);
}
