#include "editor/widget/ShownLines.h"

#include "editor/parsers/SpellChecker.h"

namespace {

int columnIn(int line, QCodeBufferPosition position)
{
    return position.line == line ? position.column : -1;
}

} // namespace

ShownLines::ShownLines(CodeEditor& editor)
    : m_parser(editor.parser()),
      m_settings(editor.settings()),
      m_ignoredWords(SpellChecker::ignoredCount()),
      m_topLine(editor.topLine()),
      m_leftColumn(editor.leftColumn())
{
    const int count = editor.visibleLines() + 1;
    editor.buffer().syncHighlighting(m_topLine + count);
    m_lines.reserve(count);
    for (int i = 0; i < count; ++i)
        m_lines.append(lineOf(editor, m_topLine + i));
}

ShownLines::Line ShownLines::lineOf(const CodeEditor& editor, int number)
{
    Line result;
    const QCodeLine* line = editor.buffer().line(number);
    if (!line)
        return result;
    result.exists = true;
    result.hasCaret = number == editor.caret().line;
    result.state = line->state;
    result.flags = line->flags;
    // A very long line isn't read for that: it counts as changed with any change.
    const QStringView text = line->text.view();
    result.text = text.size() > QCodeBuffer::LongestParsedLine
        ? static_cast<size_t>(editor.sequenceNumber())
        : qHash(text);
    const QSelection& selection = editor.selection();
    if (selection.isValid() && number >= selection.first().line
        && number <= selection.last().line) {
        result.selectedFrom = number == selection.first().line ? selection.first().column : 0;
        result.selectedTo = number == selection.last().line ? selection.last().column
                                                            : static_cast<int>(text.size()) + 1;
    }
    const QSelection& pair = editor.matchedPair();
    if (pair.isValid()) {
        result.firstMate = columnIn(number, pair.begin);
        result.secondMate = columnIn(number, pair.end);
    }
    return result;
}

bool ShownLines::isComparable(const ShownLines& other) const
{
    return m_parser == other.m_parser && m_topLine == other.m_topLine
        && m_leftColumn == other.m_leftColumn && m_lines.size() == other.m_lines.size()
        && m_ignoredWords == other.m_ignoredWords && m_settings == other.m_settings;
}

QList<int> ShownLines::changedSince(const ShownLines& before) const
{
    QList<int> changed;
    for (qsizetype i = 0; i < m_lines.size(); ++i)
        if (m_lines[i] != before.m_lines[i])
            changed.append(m_topLine + static_cast<int>(i));
    return changed;
}
