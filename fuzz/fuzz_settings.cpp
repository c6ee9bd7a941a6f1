// Arbitrary settings files. What is read from one can be saved and read again.

#include "projects/settings/Settings.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("settings.xml"));
    const QString key = QStringLiteral("key");
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return 0;
    file.close();

    Settings settings;
    settings.setPath(path);
    settings.writeEntry(key, QString::fromLatin1(bytes));
    settings.sync();
    Settings again;
    again.setPath(path);
    if (settings.dirty() || again.readEntry(key) != settings.readEntry(key))
        std::abort();
    return 0;
}
