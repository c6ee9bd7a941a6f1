// White space: indentation and tabs.

#include "editor/commands/CodeEditor.h"

#include "editor/commands/SmartIndent.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isBlank(QChar c) { return c == u' ' || c == u'\t'; }

} // namespace

QString CodeEditor::getWhitespaceString(bool useTabs, int tabSize, int width, int startColumn)
{
    QString result;
    if (useTabs) {
        const int toStop = tabSize - startColumn % tabSize;
        if (width >= toStop) {
            result += u'\t';
            width -= toStop;
            result += QString(width / tabSize, u'\t');
            width %= tabSize;
        }
    }
    return result + QString(std::max(0, width), u' ');
}

int CodeEditor::whitespaceLength(QStringView text, int startColumn) const
{
    int column = startColumn;
    for (const QChar c : text) {
        if (!isBlank(c))
            break;
        column = c == u'\t' ? (column / m_settings.tabSize + 1) * m_settings.tabSize : column + 1;
    }
    return column - startColumn;
}

int CodeEditor::indentLength(int line) const { return whitespaceLength(buffer().view(line), 0); }

void CodeEditor::insertWhitespace(QCodeBufferPosition position, int width)
{
    const QStringView text = buffer().view(position.line);
    int begin = std::min(position.column, static_cast<int>(text.size()));
    int end = begin;
    while (begin > 0 && isBlank(text[begin - 1]))
        --begin;
    while (end < text.size() && isBlank(text[end]))
        ++end;
    const int startColumn = screenColumn({position.line, begin});
    const QString old = text.mid(begin, end - begin).toString();
    const int oldWidth = whitespaceLength(old, startColumn);
    const QString white =
        getWhitespaceString(m_settings.useTabs, m_settings.tabSize, oldWidth + width, startColumn);
    if (old == white)
        return;
    if (old.isEmpty())
        insertText({position.line, begin}, white);
    else
        replaceText({position.line, begin}, old, white);
}

QSelection CodeEditor::wholeLineSelection() const
{
    if (!selecting())
        return {{caret().line, 0}, {caret().line + 1, 0}};
    const Place last = selection().last();
    return {{selection().first().line, 0}, last.column == 0 ? last : Place{last.line + 1, 0}};
}

std::pair<int, int> CodeEditor::affectedLines() const
{
    const QSelection lines = wholeLineSelection();
    return {
        lines.begin.line,
        std::clamp(lines.end.line - 1, lines.begin.line, std::max(lines.begin.line, count() - 1))};
}

void CodeEditor::tab()
{
    if (selecting()) {
        lineIndent();
        return;
    }
    beginUpdate(0, CodeEditIcon::Indent);
    fillVirtualSpace();
    const Place at = caret();
    const int column = screenColumn(at);
    int width = m_settings.indentSize - column % m_settings.indentSize;
    if (m_settings.columnModeTab && at.line > 0) {
        const QStringView above = buffer().view(at.line - 1);
        int next = bufferPositionOf(at.line - 1, column).column;
        while (next < above.size() && !above[next].isSpace())
            ++next;
        while (next < above.size() && above[next].isSpace())
            ++next;
        if (next < above.size())
            width = screenColumn({at.line - 1, next}) - column;
    }
    insertWhitespace(at, width);
    setCaret(bufferPositionOf(at.line, column + width));
    endUpdate();
}

void CodeEditor::backtab()
{
    if (selecting()) {
        lineOutdent();
        return;
    }
    const int column = screenColumn(caret());
    if (column == 0)
        return;
    const int target = (column - 1) / m_settings.indentSize * m_settings.indentSize;
    beginUpdate();
    setCaret(bufferPositionOf(caret().line, target), true);
    endUpdate();
}

void CodeEditor::lineIndent()
{
    const bool wasSelecting = selecting();
    const QSelection lines = wholeLineSelection();
    const auto [first, last] = affectedLines();
    const Place kept = caret();
    const int indentBefore = indentLength(kept.line);
    beginUpdate(0, CodeEditIcon::Indent);
    for (int line = first; line <= last; ++line)
        if (!wasSelecting || !buffer().view(line).startsWith(u'#'))
            lineIndent(line);
    if (wasSelecting)
        select({lines.end, lines.begin});
    else
        setCaret(bufferPositionOf(kept.line,
                                  screenColumn(kept) + indentLength(kept.line) - indentBefore));
    endUpdate();
}

void CodeEditor::lineOutdent()
{
    const bool wasSelecting = selecting();
    const QSelection lines = wholeLineSelection();
    const auto [first, last] = affectedLines();
    beginUpdate(0, CodeEditIcon::Outdent);
    for (int line = first; line <= last; ++line)
        lineOutdent(line);
    if (wasSelecting)
        select({lines.end, lines.begin});
    endUpdate();
}

void CodeEditor::lineIndent(int line) { insertWhitespace({line, 0}, m_settings.indentSize); }

void CodeEditor::lineOutdent(int line)
{
    const int indent = indentLength(line);
    setIndent(line, indent - std::min(indent, m_settings.indentSize));
}

/// The caret moves with the text of its line.
void CodeEditor::setIndent(int line, int width)
{
    const QStringView text = buffer().view(line);
    qsizetype length = 0;
    while (length < text.size() && isBlank(text[length]))
        ++length;
    const int before = indentLength(line);
    const QString old = text.left(length).toString();
    const QString white = getWhitespaceString(m_settings.useTabs, m_settings.tabSize, width, 0);
    const Place at = caret();
    const int column = std::max(0, screenColumn(at) + width - before);
    if (old == white)
        return;
    beginUpdate();
    replaceText({line, 0}, old, white);
    if (at.line == line)
        setCaret(bufferPositionOf(line, column), true);
    else
        setCaret(at, true);
    endUpdate();
}

void CodeEditor::checkIndent(bool force)
{
    if (m_settings.indentMode != CodeEditSettings::IndentMode::Smart)
        return;
    const int last = caret().line;
    const int first = std::max(0, last - m_settings.contextLines);
    QStringList lines;
    QList<int> indents;
    for (int line = first; line <= last; ++line) {
        lines.append(buffer().text(line));
        indents.append(indentLength(line));
    }
    if (const std::optional<int> indent =
            smartIndent(lines, indents, caret().column, force, first == 0, m_settings))
        setIndent(last, *indent);
}

void CodeEditor::tabify()
{
    const auto [first, last] = affectedLines();
    tabify(first, last);
}

void CodeEditor::untabify()
{
    const auto [first, last] = affectedLines();
    untabify(first, last);
}

/// Only the white space that a line begins with: elsewhere blanks may be part of a text.
void CodeEditor::tabify(int firstLine, int lastLine)
{
    const Place kept = caret();
    const int column = screenColumn(kept);
    beginUpdate(0, CodeEditIcon::Tabify);
    for (int line = firstLine; line <= lastLine; ++line) {
        const QStringView text = buffer().view(line);
        qsizetype length = 0;
        while (length < text.size() && isBlank(text[length]))
            ++length;
        const QString old = text.left(length).toString();
        const QString white = getWhitespaceString(true, m_settings.tabSize, indentLength(line), 0);
        if (old != white)
            replaceText({line, 0}, old, white);
    }
    setCaret(bufferPositionOf(kept.line, column));
    endUpdate();
}

void CodeEditor::untabify(int firstLine, int lastLine)
{
    const Place kept = caret();
    const int column = screenColumn(kept);
    beginUpdate(0, CodeEditIcon::Untabify);
    for (int line = firstLine; line <= lastLine; ++line) {
        const QStringView text = buffer().view(line);
        if (!text.contains(u'\t'))
            continue;
        QString blanks;
        for (const QChar c : text) {
            if (c == u'\t')
                blanks += QString(m_settings.tabSize - blanks.size() % m_settings.tabSize, u' ');
            else
                blanks += c;
        }
        replaceLine(line, blanks);
    }
    setCaret(bufferPositionOf(kept.line, column));
    endUpdate();
}
