#pragma once

#include <QString>

#include <compare>
#include <string>
#include <utility>

/// A file path value, with "/" between its elements.
class Path {
public:
    Path() = default;
    explicit Path(QString path) : m_path(std::move(path)) { }
    explicit Path(const std::string& path) : m_path(QString::fromStdString(path)) { }

    bool isEmpty() const { return m_path.isEmpty(); }

    /// The native text form.
    QString osPath() const { return m_path; }
    std::string str() const { return m_path.toLocal8Bit().toStdString(); }

    friend bool operator==(const Path&, const Path&) = default;
    friend auto operator<=>(const Path& a, const Path& b)
    {
        return a.m_path.compare(b.m_path) <=> 0;
    }

private:
    QString m_path;
};
