#pragma once

#include <QString>

#include <vector>

/// What a check has found, in the order of files and lines.
class CheckReport {
public:
    /// Lines are 1-based, 0 for none.
    void error(const QString& file, int line, const QString& text);
    void warning(const QString& file, int line, const QString& text);

    bool hasErrors() const;
    /// Writes `FILE(LINE): error: TEXT` lines to standard error.
    void print();

private:
    struct Finding {
        QString file;
        int line;
        bool isError;
        QString text;
        bool operator==(const Finding&) const = default;
    };

    void add(Finding finding);

    std::vector<Finding> m_findings;
};
