// Pairs of delimiters. What is a delimiter depends on the language; those in texts and comments
// count like any others.

#include "editor/commands/CodeEditor.h"

#include "editor/parsers/CodeEditParser.h"

#include <limits>

namespace {

/// The characters of a parser's delimiters: opening and closing ones in turn.
QString delimitersOf(const CodeEditParser* parser)
{
    static const CodeEditParser* last = nullptr;
    static QString characters;
    if (!parser)
        return QStringLiteral("{}[]()");
    if (parser != last) {
        characters = parser->delimiters().remove(u'\\');
        last = parser;
    }
    return characters;
}

} // namespace

/// Walks from the place, at which one of the pair stands, to the other of its level.
static QCodeBufferPosition mateOf(const QCodeBuffer& buffer, QCodeBufferPosition from, QChar open,
                                  QChar close, int lineLimit)
{
    const bool forward = buffer.view(from.line)[from.column] == open;
    const QChar deeper = forward ? open : close;
    const QChar shallower = forward ? close : open;
    const int step = forward ? 1 : -1;
    int depth = 1;
    int column = from.column + step;
    for (int line = from.line; line >= 0 && line < buffer.count(); line += step) {
        if (std::abs(line - from.line) > lineLimit)
            break;
        const QStringView text = buffer.view(line);
        if (line != from.line)
            column = forward ? 0 : static_cast<int>(text.size()) - 1;
        for (; column >= 0 && column < text.size(); column += step) {
            if (text[column] == deeper)
                ++depth;
            else if (text[column] == shallower && --depth == 0)
                return {line, column};
        }
    }
    return NoPosition;
}

QSelection CodeEditor::findDelimiter(int lineLimit) const
{
    const QString delimiters = delimitersOf(parser());
    const QStringView text = buffer().view(caret().line);
    const int start = std::min(caret().column, static_cast<int>(text.size()));
    int ahead = start;
    while (ahead < text.size() && !delimiters.contains(text[ahead]))
        ++ahead;
    int behind = start - 1;
    while (behind >= 0 && !delimiters.contains(text[behind]))
        --behind;
    const bool hasAhead = ahead < text.size();
    if (!hasAhead && behind < 0)
        return {};
    const bool forward = hasAhead && (behind < 0 || ahead - start < start - behind);
    const Place from{caret().line, forward ? ahead : behind};
    const qsizetype index = delimiters.indexOf(text[from.column]) & ~qsizetype(1);
    return {from, mateOf(buffer(), from, delimiters[index], delimiters[index + 1], lineLimit)};
}

void CodeEditor::highlightMate()
{
    if (!parser())
        return;
    const QString delimiters = delimitersOf(parser());
    const bool atCaret = delimiters.contains(charAt(caret())) && !charAt(caret()).isNull();
    const QChar behind = charAt({caret().line, caret().column - 1});
    if (atCaret || (!behind.isNull() && delimiters.contains(behind)))
        m_matchedPair = findDelimiter(visibleLines() + 1);
}

void CodeEditor::matchDelimiter()
{
    const QSelection pair = findDelimiter(std::numeric_limits<int>::max());
    if (pair.isValid())
        setCaretPosition(pair.end);
}

void CodeEditor::matchDelimiterExtend()
{
    const QSelection pair = findDelimiter(std::numeric_limits<int>::max());
    if (!pair.isValid())
        return;
    // Both delimiters are within the selection.
    const bool forward = pair.begin < pair.end;
    const Place after = buffer().after(forward ? pair.end : pair.begin, false);
    select(forward ? QSelection{pair.begin, after} : QSelection{after, pair.end});
}

/// The innermost pair around the selection; once more the pair around that.
void CodeEditor::selectBlock()
{
    const QString delimiters = delimitersOf(parser());
    const Place first = selecting() ? selection().first() : caret();
    const Place last = selecting() ? selection().last() : caret();
    QList<int> depths(delimiters.size() / 2, 0);
    for (int line = first.line; line >= 0; --line) {
        const QStringView text = buffer().view(line);
        int column = line == first.line ? std::min<int>(first.column, static_cast<int>(text.size()))
                                        : static_cast<int>(text.size());
        while (--column >= 0) {
            const qsizetype index = delimiters.indexOf(text[column]);
            if (index < 0)
                continue;
            int& depth = depths[index / 2];
            depth += index % 2 == 0 ? -1 : 1;
            if (depth >= 0)
                continue;
            const Place open{line, column};
            const Place close = mateOf(buffer(), open, delimiters[index], delimiters[index + 1],
                                       std::numeric_limits<int>::max());
            if (close.isValid() && close >= last) {
                select({open, buffer().after(close, false)});
                return;
            }
            depth = 0;
        }
    }
}
