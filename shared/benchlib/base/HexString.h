#pragma once

#include <QString>

/// "0x" and the number in upper-case hexadecimal digits, at least `digits` of them.
inline QString toHexString(quint64 number, int digits = 1)
{
    return QStringLiteral("0x%1").arg(QString::number(number, 16).toUpper(), digits, u'0');
}
