#pragma once

#include "base/HException.h"

#include <QString>

/// A solution file that can't be loaded.
class SolutionLoadError : public HException {
public:
    /// The line is 1-based, 0 for none.
    SolutionLoadError(const QString& path, const QString& text, int line = 0)
        : HException(describe(path, text, line).toStdString()),
          m_path(path),
          m_text(text),
          m_line(line)
    {
    }

    const QString& path() const { return m_path; }
    const QString& text() const { return m_text; }
    int line() const { return m_line; }

private:
    /// The path with its line, " - ", and the text.
    static QString describe(const QString& path, const QString& text, int line)
    {
        const QString place = line > 0 ? QStringLiteral("%1(%2)").arg(path).arg(line) : path;
        return place + QStringLiteral(" - ") + text.trimmed();
    }

    QString m_path;
    QString m_text;
    int m_line;
};

/// A solution file that couldn't be written; the tree keeps its modified marks.
class SolutionSaveError : public HException {
public:
    explicit SolutionSaveError(const QString& path)
        : HException(
            (QStringLiteral("Cannot open ") + path + QStringLiteral(" for writing")).toStdString())
    {
    }
};
