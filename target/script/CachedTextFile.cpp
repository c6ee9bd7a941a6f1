#include "target/script/CachedTextFile.h"

#include <QFile>
#include <QFileInfo>

const QString& CachedTextFile::text(const QString& path)
{
    const QFileInfo info(path);
    const QDateTime time = info.lastModified();
    if (path == m_path && time == m_time && info.size() == m_size && info.exists())
        return m_text;
    m_path = path;
    m_time = time;
    m_size = info.size();
    QFile file(path);
    m_text = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    return m_text;
}
