#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Cuts the output of a process into lines and decodes them as UTF-8. Lines end with "\n" or
/// "\r\n". A line that would be longer than MaximumLine is cut, so that memory stays bounded.
class OutputLines {
public:
    static constexpr qsizetype MaximumLine = 1 << 20; ///< in bytes

    void append(const QByteArray& bytes);
    /// The next complete line, without its end.
    std::optional<QString> next();
    /// What stands behind the last line end, if anything.
    std::optional<QString> rest();

private:
    QString take(qsizetype size, qsizetype endSize);

    QByteArray m_bytes;
    qsizetype m_begin = 0;
    qsizetype m_searched = 0; ///< no line end ahead of it
};
