#include "editor/commands/CodeEditor.h"

#include <algorithm>

void CodeEditor::deleteRange(Place begin, Place end, CodeEditIcon icon)
{
    if (begin == end)
        return;
    beginUpdate(Deselect, icon);
    deleteText(begin, end);
    setCaret(begin, true);
    endUpdate(Deselect);
}

void CodeEditor::deleteSelection()
{
    if (!selecting())
        return;
    const QSelection selected = selection();
    Place begin = selected.first();
    begin.column = std::min(begin.column, buffer().length(begin.line));
    Place end = selected.last();
    end.column = std::min(end.column, buffer().length(end.line));
    beginUpdate(Repaint, CodeEditIcon::Delete);
    dropSelection();
    if (begin < end)
        deleteText(begin, end);
    setCaret(begin, true);
    endUpdate();
}

void CodeEditor::del()
{
    if (selecting())
        deleteSelection();
    else
        deleteForward();
}

void CodeEditor::deleteBack()
{
    const Place at = caret();
    if (selecting())
        deleteSelection();
    else if (at.column > buffer().length(at.line))
        setCaretPosition({at.line, at.column - 1});
    else if (at > Place{0, 0})
        deleteRange(charLeftTarget(true), at, CodeEditIcon::Delete);
}

void CodeEditor::deleteForward()
{
    if (selecting()) {
        deleteSelection();
        return;
    }
    const Place at = caret();
    if (at.column < buffer().length(at.line)) {
        deleteRange(at, {at.line, clusterAfter(at.line, at.column)}, CodeEditIcon::Delete);
    } else if (at.line + 1 < count()) {
        beginUpdate(0, CodeEditIcon::Delete);
        fillVirtualSpace();
        deleteRange(caret(), {at.line + 1, 0}, CodeEditIcon::Delete);
        endUpdate();
    }
}

void CodeEditor::deleteWordLeft()
{
    Place end = caret();
    end.column = std::min(end.column, buffer().length(end.line));
    deleteRange(wordLeftStart(), end, CodeEditIcon::Delete);
}

void CodeEditor::deleteWordRight()
{
    const Place target = wordRightStart();
    Place begin = caret();
    begin.column = std::min(begin.column, buffer().length(begin.line));
    deleteRange(begin, target, CodeEditIcon::Delete);
}

void CodeEditor::deleteWord()
{
    const QSelection word = wordAt(caret());
    if (word.isValid())
        deleteRange(word.begin, word.end, CodeEditIcon::Delete);
}

void CodeEditor::deleteLine()
{
    const int line = caret().line;
    const Place kept = caret();
    beginUpdate(Deselect, CodeEditIcon::Delete);
    if (line + 1 < count()) {
        const unsigned flags = buffer().data(line + 1);
        deleteText(Place{line, 0}, Place{line + 1, 0});
        buffer().setData(line, flags);
    } else if (line > 0)
        deleteText(Place{line - 1, buffer().length(line - 1)}, Place{line, buffer().length(line)});
    else if (buffer().length(0) > 0)
        deleteText(Place{0, 0}, endOfLine());
    setCaret({std::min(line, count() - 1), kept.column});
    endUpdate(Deselect);
}

void CodeEditor::deleteStartOfLine()
{
    deleteRange(startOfLine(), std::min(caret(), endOfLine()), CodeEditIcon::Delete);
}

void CodeEditor::deleteEndOfLine()
{
    deleteRange(std::min(caret(), endOfLine()), endOfLine(), CodeEditIcon::Delete);
}

/// Up to the next blank line.
void CodeEditor::deleteSentence()
{
    int line = caret().line + 1;
    while (line < count() && !buffer().view(line).trimmed().isEmpty())
        ++line;
    const Place end = line < count() ? Place{line, 0} : endOfDocument();
    deleteRange(std::min(caret(), endOfLine()), end, CodeEditIcon::Delete);
}

void CodeEditor::deleteTrailingWhitespace()
{
    const Place kept = caret();
    const auto [first, last] = selecting() ? affectedLines() : std::pair{0, count() - 1};
    beginUpdate(KeepScroll, CodeEditIcon::Delete);
    for (int line = first; line <= last; ++line) {
        const QStringView text = buffer().view(line);
        qsizetype length = text.size();
        while (length > 0 && text[length - 1].isSpace())
            --length;
        if (length < text.size())
            deleteText(Place{line, static_cast<int>(length)},
                       Place{line, static_cast<int>(text.size())});
    }
    setCaret(kept);
    endUpdate();
}
