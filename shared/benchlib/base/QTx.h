#pragma once

#include <QDateTime>
#include <QString>

/// Small helpers of the platform.
namespace QTx {

/// The folder of the running program.
QString applicationDirectory();

/// The root of the installation, found from the program's own path.
QString rootDirectory();

/// The time of a file's last change in UTC; an invalid time if it doesn't exist.
QDateTime getUTCModificationTime(const QString& path);

} // namespace QTx
