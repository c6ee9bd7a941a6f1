#pragma once

#include "editor/buffer/LineStore.h"
#include "editor/buffer/QCodeBufferPosition.h"

#include <QString>
#include <QStringList>

class CodeEditParser;

/// The text of one document: its lines, each with the state that lets highlighting start there.
///
/// Lines out of range are tolerated everywhere; see each operation. A line number equal to count()
/// is a legal place to write: the line comes into being.
class QCodeBuffer {
public:
    /// Lines of more units than that are shown in plain style; the parser's state passes by them.
    static constexpr int LongestParsedLine = 100'000;

    QCodeBuffer() = default;
    QCodeBuffer(const QCodeBuffer&) = delete;
    QCodeBuffer& operator=(const QCodeBuffer&) = delete;

    int count() const { return m_lines.count(); }

    /// Null for plain text. The parser isn't owned; buffers of a language share it. States stay, so
    /// that lines are looked at again only after invalidateHighlighting.
    void setParser(CodeEditParser* parser);
    CodeEditParser* parser() const { return m_parser; }
    void invalidateHighlighting();

    /// The flags of a line; 0 out of range.
    unsigned data(int line) const;
    void setData(int line, unsigned flags);

    /// A copy of the line's text; null out of range.
    QString text(int line) const;
    /// The line's text without a copy, valid until the next change of the buffer.
    QStringView view(int line) const;
    /// The line's number of units; 0 out of range.
    int length(int line) const { return contains(line) ? m_lines[line].text.length() : 0; }

    /// Null out of range. Valid until the next change.
    const QCodeLine* line(int line) const;
    QCodeLine* line(int line);
    /// The same, and the walk goes on from there; from the first line if there is no such line.
    QCodeLine* getLine(int line);
    /// A walk over the lines, one at a time; null at the ends.
    QCodeLine* getFirstLine();
    QCodeLine* getNextLine();
    QCodeLine* getPrevLine();

    /// One unit back. With `wrap` the end of the line above comes ahead of column 0, and the start
    /// of the text stays; without, the column is counted down and may get negative.
    QCodeBufferPosition before(QCodeBufferPosition position, bool wrap) const;
    /// One unit on. With `wrap` column 0 of the next line, which may be count(), follows the end.
    QCodeBufferPosition after(QCodeBufferPosition position, bool wrap) const;

    /// Lines are joined with "\n". Null for an empty range.
    QString text(QCodeBufferPosition begin, QCodeBufferPosition end) const;
    QString text(const QSelection& selection) const;

    void clear();
    /// A line at the end. Highlighting isn't told of it.
    void append(const QString& text);
    /// Replaces everything by this text, whose lines end in CR LF, CR or LF. Lines refer to the
    /// text, which the buffer keeps.
    void adopt(const QString& text);
    /// Replaces a line; count() makes a new one. Lines beyond are ignored.
    void setText(int line, QStringView text);
    /// Returns the place behind what was inserted. Lines end in "\n".
    QCodeBufferPosition insertText(QCodeBufferPosition position, QStringView text);
    void deleteText(QCodeBufferPosition begin, QCodeBufferPosition end);
    void deleteText(const QSelection& selection);

    /// Brings the states of the lines up to `last` up to date; of all by default.
    void syncHighlighting(int last = -1);
    /// The line with marks as CodeEditParser tells; without a parser its text. Valid until the next
    /// call for any buffer.
    QStringView syntaxLine(int line);

private:
    bool contains(int line) const { return line >= 0 && line < m_lines.count(); }
    void changeLine(int line, int position, int length, QStringView text);
    void parse(int line);

    CodeEditParser* m_parser = nullptr;
    LineStore m_lines;
    QString m_adopted; ///< what lines refer to that haven't been changed since
    int m_cursor = 0;
    bool m_dirty = false;
};
