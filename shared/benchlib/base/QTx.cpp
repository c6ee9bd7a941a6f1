#include "base/QTx.h"

#include "base/ProgramLocation.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUrl>

QString QTx::applicationDirectory() { return QString::fromStdString(programDirectory().string()); }

QString QTx::rootDirectory() { return QString::fromStdString(installationRoot().string()); }

QString QTx::userLocalAppDataDirectory(const QString& name)
{
    return QDir::homePath() + QStringLiteral("/.") + name.toLower().replace(u' ', u'_');
}

QString QTx::userDocumentsDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

bool QTx::makeDir(const QString& path) { return !path.isEmpty() && QDir().mkpath(path); }

bool QTx::removeFile(const QString& path) { return QFile::remove(path); }

bool QTx::copyFile(const QString& source, const QString& destination, bool overwrite)
{
    constexpr qint64 BlockSize = 1 << 20;
    const QFileInfo there(destination);
    if (there.exists()
        && (!overwrite || there.canonicalFilePath() == QFileInfo(source).canonicalFilePath()))
        return false;
    QFile in(source);
    QSaveFile out(destination);
    if (!in.open(QIODevice::ReadOnly) || !out.open(QIODevice::WriteOnly))
        return false;
    while (!in.atEnd()) {
        const QByteArray block = in.read(BlockSize);
        if (block.isEmpty() || out.write(block) != block.size())
            return false;
    }
    out.setPermissions(in.permissions() | QFileDevice::WriteOwner);
    return out.commit();
}

bool QTx::setWritable(const QString& path, bool writable)
{
    constexpr auto Everyone = QFileDevice::WriteOwner | QFileDevice::WriteUser
        | QFileDevice::WriteGroup | QFileDevice::WriteOther;
    const QFileDevice::Permissions now = QFile::permissions(path);
    return QFile::setPermissions(path, writable ? now | QFileDevice::WriteOwner : now & ~Everyone);
}

QDateTime QTx::getUTCModificationTime(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() ? info.lastModified().toUTC() : QDateTime();
}

bool QTx::setFileTimes(const QString& path, const QDateTime& time)
{
    // Times of a file that isn't open for writing can be set as well.
    QFile file(path);
    return file.open(QIODevice::ReadOnly)
        && file.setFileTime(time, QFileDevice::FileModificationTime)
        && file.setFileTime(time, QFileDevice::FileAccessTime);
}

QString QTx::shortDateTime(const QDateTime& time)
{
    return time.isValid() ? QLocale().toString(time.toLocalTime(), QLocale::ShortFormat)
                          : QString();
}

QString QTx::simplifyPath(const QString& path) { return QDir::cleanPath(path); }

bool QTx::getProxyServerAndPort(QString& server, int& port)
{
    constexpr int DefaultPort = 80;
    QString proxy = qEnvironmentVariable("http_proxy");
    if (!proxy.contains(QStringLiteral("://")))
        proxy.prepend(QStringLiteral("http://"));
    const QUrl url(proxy);
    if (!url.isValid() || url.host().isEmpty())
        return false;
    server = url.host();
    port = url.port(DefaultPort);
    return true;
}
