// Commands that change whole lines or words: case, comments, order, alignment.

#include "editor/commands/CodeEditor.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QString switchedCase(const QString& text)
{
    QString result = text;
    for (QChar& c : result)
        c = c.isUpper() ? c.toLower() : c.toUpper();
    return result;
}

/// "_" goes, and the letter behind it becomes a capital.
QString camelCase(const QString& text)
{
    QString result;
    bool raise = false;
    for (const QChar c : text) {
        if (c == u'_') {
            raise = true;
            continue;
        }
        result += raise ? c.toUpper() : c;
        raise = false;
    }
    return result;
}

/// "_" ahead of each capital that follows a small letter, which gets small.
QString splitCase(const QString& text)
{
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (i > 0 && text[i].isUpper() && text[i - 1].isLower()) {
            result += u'_';
            result += text[i].toLower();
        } else {
            result += text[i];
        }
    }
    return result;
}

const QString CommentMark = u"//"_s;

} // namespace

QStringList CodeEditor::linesBetween(int first, int last) const
{
    QStringList lines;
    for (int line = first; line <= last; ++line)
        lines.append(buffer().text(line));
    return lines;
}

/// Records only what differs.
void CodeEditor::replaceLine(int line, const QString& text)
{
    const QString old = buffer().text(line);
    qsizetype head = 0;
    while (head < std::min(old.size(), text.size()) && old[head] == text[head])
        ++head;
    qsizetype tail = 0;
    while (tail < std::min(old.size(), text.size()) - head
           && old[old.size() - 1 - tail] == text[text.size() - 1 - tail])
        ++tail;
    if (old != text)
        replaceText({line, static_cast<int>(head)}, old.mid(head, old.size() - head - tail),
                    text.mid(head, text.size() - head - tail));
}

void CodeEditor::replaceLines(int first, const QStringList& lines, CodeEditIcon icon)
{
    const bool wasSelecting = selecting();
    const QSelection whole = wholeLineSelection();
    const Place kept = caret();
    beginUpdate(0, icon);
    for (int i = 0; i < lines.size(); ++i)
        replaceLine(first + i, lines[i]);
    if (wasSelecting)
        select({whole.end, whole.begin});
    else
        setCaret(kept);
    endUpdate();
}

// Case

/// Of the selection, else of the word at the caret.
void CodeEditor::changeCase(CodeEditIcon icon, QString (*change)(const QString&))
{
    const bool wasSelecting = selecting();
    const QSelection range = wasSelecting ? selection() : wordAt(caret());
    if (!range.isValid())
        return;
    const Place kept = caret();
    const QString old = buffer().text(range);
    const QString changed = change(old);
    if (old == changed)
        return;
    beginUpdate(0, icon);
    deleteText(range.first(), range.last());
    insertText(range.first(), changed);
    const Place end = caret();
    if (wasSelecting)
        select(range.begin <= range.end ? QSelection{range.begin, end}
                                        : QSelection{end, range.end});
    else
        setCaret(std::min(kept, end));
    endUpdate();
}

void CodeEditor::uppercase()
{
    changeCase(CodeEditIcon::Uppercase, [](const QString& text) { return text.toUpper(); });
}

void CodeEditor::lowercase()
{
    changeCase(CodeEditIcon::Lowercase, [](const QString& text) { return text.toLower(); });
}

void CodeEditor::switchcase() { changeCase(CodeEditIcon::Switchcase, &switchedCase); }
void CodeEditor::camelcase() { changeCase(CodeEditIcon::Switchcase, &camelCase); }
void CodeEditor::splitcase() { changeCase(CodeEditIcon::Switchcase, &splitCase); }

// Comments

void CodeEditor::commentSelection()
{
    const bool wasSelecting = selecting();
    QSelection range = selection();
    const auto [first, last] = affectedLines();
    const Place kept = caret();
    beginUpdate(0, CodeEditIcon::Comment);
    for (int line = first; line <= last; ++line)
        insertText({line, 0}, CommentMark);
    if (wasSelecting) {
        // What was selected stays so.
        for (Place* end : {&range.begin, &range.end})
            if (end->column > 0)
                end->column += static_cast<int>(CommentMark.size());
        select(range);
    } else {
        setCaret({kept.line, kept.column + static_cast<int>(CommentMark.size())});
    }
    endUpdate();
}

void CodeEditor::uncommentSelection()
{
    const bool wasSelecting = selecting();
    QSelection range = selection();
    const auto [first, last] = affectedLines();
    Place kept = caret();
    beginUpdate(0, CodeEditIcon::Uncomment);
    for (int line = first; line <= last; ++line) {
        const QStringView text = buffer().view(line);
        const qsizetype at = text.indexOf(CommentMark);
        if (at < 0 || !text.left(at).trimmed().isEmpty())
            continue;
        const int column = static_cast<int>(at);
        const int width = static_cast<int>(CommentMark.size());
        deleteText(Place{line, column}, Place{line, column + width});
        for (Place* place : {&range.begin, &range.end, &kept})
            if (place->line == line && place->column > column)
                place->column = std::max(column, place->column - width);
    }
    if (wasSelecting)
        select(range);
    else
        setCaret(kept);
    endUpdate();
}

void CodeEditor::swapCommentSelection()
{
    if (buffer().view(affectedLines().first).trimmed().startsWith(CommentMark))
        uncommentSelection();
    else
        commentSelection();
}

// Order

void CodeEditor::sortLines(bool descending)
{
    const auto [first, last] = affectedLines();
    QStringList lines = linesBetween(first, last);
    lines.sort();
    if (descending)
        std::reverse(lines.begin(), lines.end());
    replaceLines(first, lines,
                 descending ? CodeEditIcon::SortDescending : CodeEditIcon::SortAscending);
}

void CodeEditor::sortAscending() { sortLines(false); }
void CodeEditor::sortDescending() { sortLines(true); }

/// Exchanges the caret's line with the one above it; the caret goes to the line below both.
void CodeEditor::transposeLines()
{
    const int line = caret().line;
    if (line == 0 || line >= count())
        return;
    const int column = caret().column;
    const QString above = buffer().text(line - 1);
    const QString below = buffer().text(line);
    beginUpdate(Deselect, CodeEditIcon::TransposeLines);
    replaceLine(line - 1, below);
    replaceLine(line, above);
    setCaret({std::min(line + 1, count() - 1), column});
    endUpdate(Deselect);
}

/// Exchanges the word at the caret with the one ahead of it in the line; the caret goes behind
/// both.
void CodeEditor::transposeWords()
{
    static const QRegularExpression word(u"\\w+"_s, QRegularExpression::UseUnicodePropertiesOption);
    const int line = caret().line;
    const QString text = buffer().text(line);
    QRegularExpressionMatch left;
    QRegularExpressionMatch right;
    for (auto i = word.globalMatch(text); i.hasNext();) {
        left = right;
        right = i.next();
        if (left.hasMatch() && right.capturedEnd() >= caret().column)
            break;
    }
    if (!left.hasMatch())
        return;
    const QString between =
        text.mid(left.capturedEnd(), right.capturedStart() - left.capturedEnd());
    const QString old = left.captured() + between + right.captured();
    beginUpdate(Deselect, CodeEditIcon::TransposeWords);
    replaceText({line, static_cast<int>(left.capturedStart())}, old,
                right.captured() + between + left.captured());
    endUpdate(Deselect);
}

// Alignment

/// Puts each line at a share of the room that it has within the widest, in sixths: 0 is left.
void CodeEditor::alignLines(int sixths)
{
    const auto [first, last] = affectedLines();
    int left = -1;
    int right = 0;
    for (int line = first; line <= last; ++line) {
        const QStringView text = buffer().view(line);
        if (text.trimmed().isEmpty())
            continue;
        const int indent = indentLength(line);
        left = left < 0 ? indent : std::min(left, indent);
        right = std::max(right, screenColumn({line, buffer().length(line)}));
    }
    QStringList lines;
    for (int line = first; line <= last; ++line) {
        const QString text = buffer().text(line).trimmed();
        const int room = right - left - static_cast<int>(text.size());
        const int indent = text.isEmpty() ? 0 : left + std::max(0, room) * sixths / 6;
        lines.append(getWhitespaceString(m_settings.useTabs, m_settings.tabSize, indent, 0) + text);
    }
    replaceLines(first, lines, CodeEditIcon::Align);
}

void CodeEditor::alignLeft() { alignLines(0); }
void CodeEditor::center() { alignLines(3); }
void CodeEditor::alignRight() { alignLines(6); }

/// Fields that are separated by white space stand below each other.
void CodeEditor::columnize()
{
    static const QRegularExpression space(u"\\s+"_s);
    const auto [first, last] = affectedLines();
    QList<QStringList> rows;
    QList<qsizetype> widths;
    for (const QString& line : linesBetween(first, last)) {
        rows.append(line.split(space, Qt::SkipEmptyParts));
        for (qsizetype i = 0; i < rows.last().size(); ++i) {
            if (i == widths.size())
                widths.append(0);
            widths[i] = std::max(widths[i], rows.last()[i].size());
        }
    }
    QStringList lines;
    for (const QStringList& row : rows) {
        QString line;
        for (qsizetype i = 0; i < row.size(); ++i) {
            line += row[i].leftJustified(widths[i]);
            if (i + 1 < row.size())
                line += u' ';
        }
        lines.append(line);
    }
    replaceLines(first, lines, CodeEditIcon::SortAscending);
}

// Joining

void CodeEditor::joinNextLine(QStringView between)
{
    const int line = caret().line;
    if (line + 1 >= count())
        return;
    qsizetype length = buffer().length(line);
    const QStringView text = buffer().view(line);
    if (!between.isEmpty())
        while (length > 0 && text[length - 1].isSpace())
            --length;
    const Place end{line, static_cast<int>(length)};
    const bool nextIsBlank = buffer().view(line + 1).trimmed().isEmpty();
    deleteText(
        end,
        Place{line + 1, nextIsBlank ? buffer().length(line + 1) : firstNonSpaceColumn(line + 1)});
    if (length > 0 && !nextIsBlank && !between.isEmpty())
        insertText(end, between.toString());
    setCaret(end);
}

void CodeEditor::joinLines()
{
    const auto [first, last] = affectedLines();
    beginUpdate(Deselect, CodeEditIcon::Edit);
    setCaret({first, buffer().length(first)});
    for (int i = std::max(1, last - first); i > 0; --i)
        joinNextLine(u" ");
    endUpdate(Deselect);
}

void CodeEditor::joinLinesWithoutSpace()
{
    const auto [first, last] = affectedLines();
    beginUpdate(Deselect, CodeEditIcon::Edit);
    setCaret({first, buffer().length(first)});
    for (int i = std::max(1, last - first); i > 0; --i)
        joinNextLine({});
    endUpdate(Deselect);
}
