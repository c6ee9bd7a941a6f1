#pragma once

#include <QString>

#include <compare>
#include <string>

/// A file path value, with "/" between its elements and without superfluous ones: "a/./b/../c" is
/// "a/c", so that equal paths are equal texts. Nothing here looks at the disk, but for `writable`.
class Path {
public:
    Path() = default;
    explicit Path(const QString& path);
    explicit Path(const std::string& path) : Path(QString::fromStdString(path)) { }

    bool isEmpty() const { return m_path.isEmpty(); }
    bool isRelative() const { return !m_path.startsWith(u'/'); }

    /// The native text form.
    QString osPath() const { return m_path; }
    std::string str() const { return m_path.toLocal8Bit().toStdString(); }
    /// The native form of a text that may be a path.
    static QString toOsPath(const QString& path);

    /// "main.c" of "/src/main.c".
    QString fileName() const;
    /// The file name up to its last "."; all of it if there is none.
    QString baseName() const;
    /// The file name behind its last "."; empty if there is none.
    QString extension() const;
    /// The path without the file name; "." for a name alone.
    Path directory() const;

    /// A relative path is taken to lie in `directory`.
    Path absolute(const QString& directory) const;

    /// The way from `directory` to this file, with ".." where needed. The path itself when there is
    /// none: one of the two is relative and the other isn't, or the directory is empty.
    QString relativeFilePath(const QString& directory) const;
    /// The same for this directory; "." when it is `directory`.
    QString relativeDirPath(const QString& directory) const;

    /// Whether the file can be written, or made if it doesn't exist.
    bool writable() const;

    friend bool operator==(const Path&, const Path&) = default;
    friend auto operator<=>(const Path& a, const Path& b)
    {
        return a.m_path.compare(b.m_path) <=> 0;
    }

private:
    QString m_path;
};
