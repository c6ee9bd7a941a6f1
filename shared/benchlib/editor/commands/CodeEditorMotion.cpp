// Moving the caret, with and without selecting.

#include "editor/commands/CodeEditor.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <utility>

namespace {

enum class CharClass { Space, Word, Other };

CharClass classOf(QChar c)
{
    if (isWordChar(c))
        return CharClass::Word;
    return c.isSpace() ? CharClass::Space : CharClass::Other;
}

int skipForward(QStringView text, int at, CharClass kind)
{
    while (at < text.size() && classOf(text[at]) == kind)
        ++at;
    return at;
}

int skipBack(QStringView text, int at, CharClass kind)
{
    while (at > 0 && classOf(text[at - 1]) == kind)
        --at;
    return at;
}

/// Of what stands there, but for white space.
int skipRunForward(QStringView text, int at)
{
    if (at < text.size() && classOf(text[at]) != CharClass::Space)
        return skipForward(text, at, classOf(text[at]));
    return at;
}

int skipRunBack(QStringView text, int at)
{
    if (at > 0 && classOf(text[at - 1]) != CharClass::Space)
        return skipBack(text, at, classOf(text[at - 1]));
    return at;
}

/// Below, every unit is a character of its own.
constexpr char16_t FirstCombining = 0x300;
/// How far around the caret the borders of characters are looked for.
constexpr int ClusterWindow = 64;
constexpr qsizetype WindowLength = qsizetype(2) * ClusterWindow;

} // namespace

void CodeEditor::move(Place (CodeEditor::*target)() const, bool extend)
{
    const unsigned flag = extend ? Extend : Deselect;
    const bool hadSelection = selecting();
    beginUpdate(extend ? Extend : hadSelection ? Deselect : 0u);
    setCaret((this->*target)());
    endUpdate(extend || hadSelection ? flag : 0u);
}

// The commands are these targets, each with and without extending.
#define MOTION(command, target)                                                                    \
    void CodeEditor::command() { move(&CodeEditor::target, false); }
#define EXTENDING_MOTION(command, target)                                                          \
    MOTION(command, target)                                                                        \
    void CodeEditor::command##Extend() { move(&CodeEditor::target, true); }

EXTENDING_MOTION(charLeft, leftOfCaret)
EXTENDING_MOTION(charRight, rightOfCaret)
MOTION(charLeftNoWrap, leftInLine)
MOTION(charRightNoWrap, rightInLine)
EXTENDING_MOTION(wordLeft, wordLeftStart)
EXTENDING_MOTION(wordLeftEnd, wordLeftStop)
EXTENDING_MOTION(wordRight, wordRightStart)
EXTENDING_MOTION(wordRightEnd, wordRightStop)
EXTENDING_MOTION(lineUp, lineAbove)
EXTENDING_MOTION(lineDown, lineBelow)
MOTION(lineUpChunk, chunkAbove)
MOTION(lineDownChunk, chunkBelow)
MOTION(downLine, startOfNextLine)
EXTENDING_MOTION(lineStartToggle, startToggle)
MOTION(lineStart, startOfLine)
MOTION(lineStartFirstNonSpace, firstNonSpace)
EXTENDING_MOTION(lineEnd, endOfLine)
MOTION(lineNextEnd, endOfNextLine)
MOTION(textStart, startOfText)
EXTENDING_MOTION(topOfWindow, topOfView)
EXTENDING_MOTION(bottomOfWindow, bottomOfView)
EXTENDING_MOTION(documentStart, startOfDocument)
EXTENDING_MOTION(documentEnd, endOfDocument)

#undef EXTENDING_MOTION
#undef MOTION

void CodeEditor::pageUp() { page(-1, false); }
void CodeEditor::pageUpExtend() { page(-1, true); }
void CodeEditor::pageDown() { page(1, false); }
void CodeEditor::pageDownExtend() { page(1, true); }

/// The view goes on by a page but for one line, and the caret with it.
void CodeEditor::page(int direction, bool extend)
{
    const int lines = direction * std::max(1, visibleLines() - 1);
    const unsigned flag = extend ? Extend : Deselect;
    beginUpdate(flag);
    const Place target = verticalTarget(lines);
    setTopLine(topLine() + lines);
    setCaret(target);
    endUpdate(flag | Repaint);
}

// Places

int CodeEditor::clusterAfter(int line, int column) const
{
    const QStringView text = buffer().view(line);
    if (column + 1 >= text.size()
        || (text[column] < FirstCombining && text[column + 1] < FirstCombining))
        return column + 1;
    const int from = std::max(0, column - ClusterWindow);
    const QStringView window = text.mid(from, WindowLength);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, window.data(), window.size());
    finder.setPosition(column - from);
    const qsizetype next = finder.toNextBoundary();
    return next < 0 ? column + 1 : from + static_cast<int>(next);
}

int CodeEditor::clusterBefore(int line, int column) const
{
    const QStringView text = buffer().view(line);
    if (column < 2 || column > text.size()
        || (text[column - 1] < FirstCombining && text[column - 2] < FirstCombining))
        return column - 1;
    const int from = std::max(0, column - ClusterWindow);
    const QStringView window = text.mid(from, WindowLength);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, window.data(), window.size());
    finder.setPosition(column - from);
    const qsizetype previous = finder.toPreviousBoundary();
    return previous < 0 ? column - 1 : from + static_cast<int>(previous);
}

QChar CodeEditor::charAt(Place place) const
{
    const QStringView text = buffer().view(place.line);
    return place.column >= 0 && place.column < text.size() ? text[place.column] : QChar();
}

QCodeBufferPosition CodeEditor::charLeftTarget(bool wrap) const
{
    const Place at = caret();
    if (at.column == 0)
        return wrap ? buffer().before(at, true) : at;
    return {at.line, clusterBefore(at.line, at.column)};
}

QCodeBufferPosition CodeEditor::charRightTarget(bool wrap) const
{
    const Place at = caret();
    if (at.column < buffer().length(at.line))
        return {at.line, clusterAfter(at.line, at.column)};
    if (virtualSpace())
        return {at.line, at.column + 1};
    return wrap && at.line + 1 < count() ? Place{at.line + 1, 0} : at;
}

QCodeBufferPosition CodeEditor::wordRightStart() const
{
    Place at = caret();
    if (at.column >= buffer().length(at.line)) {
        if (at.line + 1 >= count())
            return at;
        return {at.line + 1, skipForward(buffer().view(at.line + 1), 0, CharClass::Space)};
    }
    const QStringView text = buffer().view(at.line);
    at.column = skipForward(text, skipRunForward(text, at.column), CharClass::Space);
    return at;
}

QCodeBufferPosition CodeEditor::wordRightStop() const
{
    Place at = caret();
    if (at.column >= buffer().length(at.line)) {
        if (at.line + 1 >= count())
            return at;
        at = {at.line + 1, 0};
    }
    const QStringView text = buffer().view(at.line);
    at.column = skipRunForward(text, skipForward(text, at.column, CharClass::Space));
    return at;
}

QCodeBufferPosition CodeEditor::wordLeftStart() const
{
    Place at = caret();
    at.column = std::min(at.column, buffer().length(at.line));
    if (at.column == 0) {
        if (at.line == 0)
            return at;
        at = {at.line - 1, buffer().length(at.line - 1)};
    }
    const QStringView text = buffer().view(at.line);
    at.column = skipRunBack(text, skipBack(text, at.column, CharClass::Space));
    return at;
}

QCodeBufferPosition CodeEditor::wordLeftStop() const
{
    Place at = caret();
    at.column = std::min(at.column, buffer().length(at.line));
    if (at.column == 0) {
        if (at.line == 0)
            return at;
        const QStringView above = buffer().view(at.line - 1);
        return {at.line - 1, skipBack(above, static_cast<int>(above.size()), CharClass::Space)};
    }
    const QStringView text = buffer().view(at.line);
    at.column = skipBack(text, skipRunBack(text, at.column), CharClass::Space);
    return at;
}

QCodeBufferPosition CodeEditor::verticalTarget(int lines) const
{
    const int last = virtualSpace() ? count() + linesBelowText() : count() - 1;
    const int line = std::clamp(caret().line + lines, 0, std::max(0, last));
    return bufferPositionOf(line, screenColumn(wantedCaret()));
}

/// To the next blank line: from paragraph to paragraph.
QCodeBufferPosition CodeEditor::chunkTarget(int step) const
{
    int line = caret().line + step;
    while (line > 0 && line < count() - 1 && !buffer().view(line).trimmed().isEmpty())
        line += step;
    line = std::clamp(line, 0, std::max(0, count() - 1));
    return bufferPositionOf(line, screenColumn(wantedCaret()));
}

QCodeBufferPosition CodeEditor::startOfNextLine() const
{
    return caret().line + 1 < count() ? Place{caret().line + 1, 0} : endOfLine();
}

int CodeEditor::firstNonSpaceColumn(int line) const
{
    return skipForward(buffer().view(line), 0, CharClass::Space);
}

QCodeBufferPosition CodeEditor::startToggle() const
{
    const int line = caret().line;
    const int first = firstNonSpaceColumn(line);
    const bool blank = first >= buffer().length(line);
    return {line, blank || caret().column == first ? 0 : first};
}

QCodeBufferPosition CodeEditor::endOfNextLine() const
{
    const bool atEnd = caret().column >= buffer().length(caret().line);
    const int line = std::min(caret().line + (atEnd ? 1 : 0), std::max(0, count() - 1));
    return {line, buffer().length(line)};
}

/// The first character that isn't white space.
QCodeBufferPosition CodeEditor::startOfText() const
{
    for (int line = 0; line < count(); ++line)
        if (const int column = firstNonSpaceColumn(line); column < buffer().length(line))
            return {line, column};
    return {0, 0};
}

QCodeBufferPosition CodeEditor::topOfView() const
{
    return bufferPositionOf(topLine(), screenColumn(wantedCaret()));
}

QCodeBufferPosition CodeEditor::bottomOfView() const
{
    return bufferPositionOf(topLine() + visibleLines() - 1, screenColumn(wantedCaret()));
}

QCodeBufferPosition CodeEditor::endOfDocument() const
{
    const int last = std::max(0, count() - 1);
    return {last, buffer().length(last)};
}

// Going to a place

void CodeEditor::setCaretPosition(QCodeBufferPosition position, bool extend)
{
    const unsigned flag = extend ? Extend : Deselect;
    beginUpdate(flag);
    setCaret(position);
    endUpdate(flag);
}

void CodeEditor::gotoLine() { gotoLine(m_host->askLine(caret().line + 1, count())); }

void CodeEditor::gotoLine(int line)
{
    if (line > 0)
        setCaretPosition({line - 1, 0});
}

void CodeEditor::select(const QSelection& selection)
{
    beginUpdate(Deselect);
    setCaret(selection.end);
    setSelection(selection.begin == selection.end ? QSelection{} : selection);
    endUpdate(Repaint);
}

void CodeEditor::swapAnchors()
{
    if (selecting())
        select({selection().end, selection().begin});
}

void CodeEditor::selectAll() { select({startOfDocument(), endOfDocument()}); }

void CodeEditor::selectLine()
{
    const int line = caret().line;
    select({{line, 0}, line + 1 < count() ? Place{line + 1, 0} : endOfLine()});
}

QSelection CodeEditor::runAt(QCodeBufferPosition position) const
{
    const QStringView text = buffer().view(position.line);
    if (position.column >= text.size())
        return {};
    const CharClass kind = classOf(text[position.column]);
    return {{position.line, skipBack(text, position.column, kind)},
            {position.line, skipForward(text, position.column, kind)}};
}

void CodeEditor::selectWord()
{
    QSelection word = wordAt(caret());
    if (!word.isValid()) {
        const QStringView text = buffer().view(caret().line);
        const int column = std::min(caret().column, static_cast<int>(text.size()));
        word = {{caret().line, skipRunBack(text, column)},
                {caret().line, skipRunForward(text, column)}};
    }
    select(word);
}
