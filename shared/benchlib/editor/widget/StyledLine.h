#pragma once

#include <QList>
#include <QString>

/// A line as it is drawn: its characters, and which style they have.
struct StyledLine {
    struct Run {
        int start; ///< a column
        int length;
        int style;           ///< a SyntaxElement
        char16_t attributes; ///< bits of the parser's attribute word
    };

    QString text;
    QList<Run> runs;
    /// A band behind the whole line.
    bool band = false;
    /// True if characters may be wider than a column, combine, or run from right to left.
    bool isComplex = false;

    /// From what a parser wrote.
    static StyledLine from(QStringView syntaxLine);
    /// A line without styles, on the grid of columns. The text isn't copied: it must outlive this.
    static StyledLine plain(QStringView text);
};
