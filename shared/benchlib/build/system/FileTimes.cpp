#include "build/system/FileTimes.h"

#include <QFile>

#include <sys/stat.h>

FileTime FileTimes::now(const QString& absolutePath)
{
    struct stat status;
    if (stat(QFile::encodeName(absolutePath).constData(), &status) != 0)
        return MissingFile;
    return FileTime(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec;
}

FileTime FileTimes::of(const QString& absolutePath)
{
    const auto seen = m_seen.constFind(absolutePath);
    if (seen != m_seen.constEnd())
        return *seen;
    const FileTime time = now(absolutePath);
    m_seen.insert(absolutePath, time);
    return time;
}

FileTime FileTimes::of(const QString& directory, const QString& path)
{
    if (path.startsWith(u'/'))
        return of(path);
    if (m_directory != directory) {
        m_directory = directory;
        m_inDirectory.clear();
    }
    const auto seen = m_inDirectory.constFind(path);
    if (seen != m_inDirectory.constEnd())
        return *seen;
    const FileTime time = of(directory + u'/' + path);
    m_inDirectory.insert(path, time);
    return time;
}

QDateTime FileTimes::toDateTime(FileTime time)
{
    return QDateTime::fromMSecsSinceEpoch(time / 1'000'000);
}
