#include "base/QTx.h"

#include "base/ProgramLocation.h"

#include <QFileInfo>

QString QTx::applicationDirectory() { return QString::fromStdString(programDirectory().string()); }

QString QTx::rootDirectory() { return QString::fromStdString(installationRoot().string()); }

QDateTime QTx::getUTCModificationTime(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() ? info.lastModified().toUTC() : QDateTime();
}
