#pragma once

#include <QString>

#include <cstdint>

/// A number of bytes for the user: "512 bytes", "2 KB", "1.5 KB".
inline QString kbSize(std::uint64_t bytes)
{
    if (bytes < 1024)
        return QStringLiteral("%1 bytes").arg(bytes);
    QString number = QString::number(static_cast<double>(bytes) / 1024, 'f', 1);
    if (number.endsWith(QLatin1String(".0")))
        number.chop(2);
    return number + QStringLiteral(" KB");
}
