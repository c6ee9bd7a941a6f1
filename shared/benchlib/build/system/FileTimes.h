#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>

/// A file's time of last change in nanoseconds since 1970.
using FileTime = qint64;
/// The time of a file that isn't there.
constexpr FileTime MissingFile = -1;

/// Asks the file system once for each file, until told that files have changed.
class FileTimes {
public:
    FileTime of(const QString& absolutePath);
    /// Asks the file system, whatever was seen before.
    static FileTime now(const QString& absolutePath);
    void clear() { m_seen.clear(); }

    static QDateTime toDateTime(FileTime time);

private:
    QHash<QString, FileTime> m_seen;
};
