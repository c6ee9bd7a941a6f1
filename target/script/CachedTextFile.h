#pragma once

#include <QDateTime>
#include <QString>

/// The text of a file, read again only when another file is asked for or the file has changed.
class CachedTextFile {
public:
    /// The null string if the file can't be read.
    const QString& text(const QString& path);

private:
    QString m_path;
    QDateTime m_time;
    qint64 m_size = -1;
    QString m_text;
};
