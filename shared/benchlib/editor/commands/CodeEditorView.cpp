// What of the text is looked at.

#include "editor/commands/CodeEditor.h"

#include <algorithm>

namespace {

/// A fence needs some room between its two sides.
constexpr int LeastLinesForFence = 12;

} // namespace

void CodeEditor::setTopLine(int line)
{
    line = std::clamp(line, 0, std::max(0, count() - 1));
    if (line == m_topLine)
        return;
    m_topLine = line;
    emit scrolled();
}

void CodeEditor::setLeftColumn(int column)
{
    column = std::max(0, column);
    if (column == m_leftColumn)
        return;
    m_leftColumn = column;
    emit scrolled();
}

void CodeEditor::setVisibleSize(int lines, int columns)
{
    m_visibleLines = std::max(1, lines);
    m_visibleColumns = std::max(1, columns);
}

void CodeEditor::updateFinished(unsigned flags, QCodeBufferPosition caretBefore)
{
    if ((flags & KeepScroll) == 0) {
        ensureCaretVisible(caretBefore, flags);
        keepFence(caretBefore, flags);
    }
    m_topLine = std::min(m_topLine, std::max(0, count() - 1));
    const QSelection pair = m_matchedPair;
    m_matchedPair = {};
    if (m_settings.mateMatching == CodeEditSettings::MateMatching::Always)
        highlightMate();
    const bool whole = (flags & (Repaint | Extend | Deselect)) != 0 || pair != m_matchedPair;
    if (whole || caret() != caretBefore)
        emit viewChanged(whole, caretBefore.line);
}

void CodeEditor::ensureCaretVisible(QCodeBufferPosition caretBefore, unsigned& flags)
{
    const int line = caret().line;
    const int top = m_topLine;
    if (line < m_topLine)
        m_topLine = line;
    else if (line >= m_topLine + m_visibleLines)
        m_topLine = line - m_visibleLines + 1;
    // A place far away is shown with what stands around it.
    if (std::abs(m_topLine - top) > m_visibleLines && caretBefore.line != line)
        m_topLine = std::max(0, line - m_visibleLines / 2);

    const int column = m_caretMeasure ? static_cast<int>(m_caretMeasure()) : screenColumn(caret());
    const int left = m_leftColumn;
    if (column < m_leftColumn)
        m_leftColumn = std::max(0, column - m_settings.leftMargin);
    else if (column >= m_leftColumn + m_visibleColumns)
        m_leftColumn = column - m_visibleColumns + m_settings.rightMargin;
    if (left != m_leftColumn || top != m_topLine) {
        flags |= Repaint | LinesChanged;
        emit scrolled();
    }
}

void CodeEditor::keepFence(QCodeBufferPosition caretBefore, unsigned& flags)
{
    if (!m_settings.marginsEnabled || m_visibleLines <= LeastLinesForFence)
        return;
    const int line = caret().line;
    const int lastAbove = m_topLine + m_settings.topMargin;
    const int firstBelow = m_topLine + m_visibleLines - m_settings.bottomMargin;
    // A caret that was put within a margin moves there without the text following it.
    if (caretBefore.line <= lastAbove || caretBefore.line >= firstBelow)
        return;
    const int top = m_topLine;
    if (line <= lastAbove)
        m_topLine = std::max(0, line - m_settings.topMargin - 1);
    else if (line >= firstBelow)
        m_topLine = std::clamp(line - m_visibleLines + 1 + m_settings.bottomMargin, 0,
                               std::max(0, count() - 1));
    if (top != m_topLine) {
        flags |= Repaint | LinesChanged;
        emit scrolled();
    }
}

void CodeEditor::scrollBy(int lines)
{
    beginUpdate(KeepScroll);
    setTopLine(m_topLine + lines);
    endUpdate(KeepScroll | Repaint);
}

void CodeEditor::scrollUp() { scrollBy(1); }
void CodeEditor::scrollDown() { scrollBy(-1); }
void CodeEditor::scrollTop() { scrollBy(caret().line - m_topLine); }
void CodeEditor::scrollMiddle() { scrollBy(caret().line - m_visibleLines / 2 - m_topLine); }
void CodeEditor::scrollBottom() { scrollBy(caret().line - m_visibleLines + 1 - m_topLine); }
