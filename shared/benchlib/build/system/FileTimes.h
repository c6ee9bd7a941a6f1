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
    /// Of a path that may be relative to the directory.
    FileTime of(const QString& directory, const QString& path);
    /// Asks the file system, whatever was seen before.
    static FileTime now(const QString& absolutePath);
    void clear()
    {
        m_seen.clear();
        m_inDirectory.clear();
    }

    static QDateTime toDateTime(FileTime time);

private:
    QHash<QString, FileTime> m_seen;
    /// By relative path, of the directory asked for last: the files of a project are asked for by
    /// the names that its objects hold.
    QString m_directory;
    QHash<QString, FileTime> m_inDirectory;
};
