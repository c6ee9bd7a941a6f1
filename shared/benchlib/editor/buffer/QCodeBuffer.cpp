#include "editor/buffer/QCodeBuffer.h"

#include "editor/parsers/CodeEditParser.h"
#include "editor/parsers/SpellChecker.h"

#include <QtGlobal>

#include <algorithm>
#include <vector>

namespace {

/// What the parsers write to; one for all buffers, only ever grown.
std::vector<char16_t>& parseBuffer()
{
    static std::vector<char16_t> buffer(1024);
    return buffer;
}

char16_t* parseBufferFor(qsizetype length)
{
    std::vector<char16_t>& buffer = parseBuffer();
    const auto needed = static_cast<std::size_t>(CodeEditParser::outputSize(length));
    if (buffer.size() < needed)
        buffer.resize(needed);
    return buffer.data();
}

/// Says so when they aren't; the operation goes on with the values given.
void assertOrdered(QCodeBufferPosition begin, QCodeBufferPosition end)
{
    if (begin > end)
        qWarning("ASSERT: \"begin <= end\" in %s (%d)", __FILE__, __LINE__);
}

QStringView leftOf(QStringView text, int column)
{
    return text.left(std::clamp<qsizetype>(column, 0, text.size()));
}

QStringView rightFrom(QStringView text, int column)
{
    return text.mid(std::clamp<qsizetype>(column, 0, text.size()));
}

} // namespace

void QCodeBuffer::setParser(CodeEditParser* parser)
{
    m_parser = parser;
    m_dirty = true;
}

void QCodeBuffer::invalidateHighlighting()
{
    for (int line = 0; line < count(); ++line)
        m_lines.invalidate(line);
    m_dirty = true;
}

unsigned QCodeBuffer::data(int line) const { return contains(line) ? m_lines[line].flags : 0; }

void QCodeBuffer::setData(int line, unsigned flags)
{
    if (contains(line))
        m_lines[line].flags = flags;
}

QString QCodeBuffer::text(int line) const
{
    return contains(line) ? m_lines[line].text.view().toString() : QString();
}

QStringView QCodeBuffer::view(int line) const
{
    return contains(line) ? m_lines[line].text.view() : QStringView();
}

const QCodeLine* QCodeBuffer::line(int line) const
{
    return contains(line) ? &m_lines[line] : nullptr;
}

QCodeLine* QCodeBuffer::line(int line) { return contains(line) ? &m_lines[line] : nullptr; }

QCodeLine* QCodeBuffer::getLine(int line)
{
    m_cursor = contains(line) ? line : 0;
    return this->line(line);
}

QCodeLine* QCodeBuffer::getFirstLine() { return getLine(0); }

QCodeLine* QCodeBuffer::getNextLine()
{
    if (m_cursor + 1 >= count())
        return nullptr;
    return &m_lines[++m_cursor];
}

QCodeLine* QCodeBuffer::getPrevLine()
{
    if (m_cursor <= 0)
        return nullptr;
    return &m_lines[--m_cursor];
}

QCodeBufferPosition QCodeBuffer::before(QCodeBufferPosition position, bool wrap) const
{
    if (!wrap || position.column > 0)
        return {position.line, position.column - 1};
    if (position.line <= 0)
        return {0, 0};
    return {position.line - 1, length(position.line - 1)};
}

QCodeBufferPosition QCodeBuffer::after(QCodeBufferPosition position, bool wrap) const
{
    if (wrap && position.column + 1 > length(position.line))
        return {position.line + 1, 0};
    return {position.line, position.column + 1};
}

QString QCodeBuffer::text(QCodeBufferPosition begin, QCodeBufferPosition end) const
{
    assertOrdered(begin, end);
    if (begin == end)
        return {};
    if (begin.line >= end.line)
        return rightFrom(leftOf(view(begin.line), end.column), begin.column).toString();
    const QStringView head = rightFrom(view(begin.line), begin.column);
    const QStringView tail = leftOf(view(end.line), end.column);
    qsizetype size = head.size() + tail.size() + (end.line - begin.line);
    for (int line = begin.line + 1; line < end.line; ++line)
        size += length(line);
    QString result;
    result.reserve(size);
    result += head;
    for (int line = begin.line + 1; line < end.line; ++line) {
        result += u'\n';
        result += view(line);
    }
    result += u'\n';
    result += tail;
    return result;
}

QString QCodeBuffer::text(const QSelection& selection) const
{
    return text(selection.first(), selection.last());
}

void QCodeBuffer::clear()
{
    m_lines.clear();
    m_adopted.clear();
    m_cursor = 0;
}

void QCodeBuffer::append(const QString& text) { m_lines.append({.text = LineText(text)}); }

void QCodeBuffer::adopt(const QString& text)
{
    clear();
    m_adopted = text;
    m_dirty = true;
    const char16_t* at = QStringView(m_adopted).utf16();
    const char16_t* const end = at + m_adopted.size();
    m_lines.reserveForAppending(static_cast<int>(m_adopted.size() / 32));
    for (const char16_t* start = at;;) {
        // The two terminators are the only characters below 14 that are common at all.
        while (at < end && (*at > u'\r' || (*at != u'\n' && *at != u'\r')))
            ++at;
        m_lines.append({.text = LineText::referringTo(QStringView(start, at))});
        if (at == end)
            return;
        at += *at == u'\r' && at + 1 < end && at[1] == u'\n' ? 2 : 1;
        start = at;
    }
}

void QCodeBuffer::setText(int line, QStringView text)
{
    if (line == count())
        m_lines.append({});
    if (contains(line))
        changeLine(line, 0, length(line), text);
}

QCodeBufferPosition QCodeBuffer::insertText(QCodeBufferPosition position, QStringView text)
{
    m_dirty = true;
    if (position.line < 0 || position.line > count())
        return position;
    qsizetype newline = text.indexOf(u'\n');
    if (newline < 0) {
        if (position.line == count())
            m_lines.append({});
        changeLine(position.line, position.column, 0, text);
        return {position.line, position.column + static_cast<int>(text.size())};
    }

    std::vector<QCodeLine> lines;
    const bool append = position.line == count();
    if (append)
        lines.push_back({.text = LineText(text.left(newline))});
    QStringView last;
    for (qsizetype start = newline + 1;;) {
        newline = text.indexOf(u'\n', start);
        if (newline < 0) {
            last = text.mid(start);
            break;
        }
        lines.push_back({.text = LineText(text.mid(start, newline - start))});
        start = newline + 1;
    }
    lines.push_back({.text = LineText(last)});
    if (!append) {
        const QStringView line = view(position.line);
        const QStringView tail = rightFrom(line, position.column);
        lines.back().text.replace(static_cast<int>(last.size()), 0, tail);
        const int column = static_cast<int>(line.size() - tail.size());
        changeLine(position.line, column, static_cast<int>(tail.size()),
                   text.left(text.indexOf(u'\n')));
    }
    const int added = static_cast<int>(lines.size());
    m_lines.insert(append ? count() : position.line + 1, std::move(lines));
    return {position.line + added - (append ? 1 : 0), static_cast<int>(last.size())};
}

void QCodeBuffer::deleteText(QCodeBufferPosition begin, QCodeBufferPosition end)
{
    assertOrdered(begin, end);
    m_dirty = true;
    if (!contains(begin.line))
        return;
    if (begin.line == end.line) {
        changeLine(begin.line, begin.column, std::max(0, end.column - begin.column), {});
        return;
    }
    const int column = std::clamp(begin.column, 0, length(begin.line));
    changeLine(begin.line, column, length(begin.line) - column,
               rightFrom(view(end.line), end.column));
    const int last = std::min(end.line, count() - 1);
    m_lines.erase(begin.line + 1, last - begin.line);
}

void QCodeBuffer::deleteText(const QSelection& selection)
{
    deleteText(selection.first(), selection.last());
}

void QCodeBuffer::changeLine(int line, int position, int length, QStringView text)
{
    m_lines[line].text.replace(position, length, text);
    m_lines.invalidate(line);
    m_dirty = true;
}

/// Into the parse buffer, from the line's state.
void QCodeBuffer::parse(int line)
{
    const QStringView text = view(line);
    m_parser->setState(m_lines[line].state, 0);
    if (text.size() <= LongestParsedLine)
        m_parser->parse(text, parseBufferFor(text.size()));
}

void QCodeBuffer::syncHighlighting(int last)
{
    if (!m_parser || !m_dirty)
        return;
    if (last < 0 || last >= count())
        last = count() - 1;
    // Only what is drawn is checked.
    const SpellChecker::Pause noSpelling;
    int line = m_lines.nextUnknown(0);
    while (line <= last) {
        // Only the states at the starts of lines are kept: the line above tells this one's.
        int state = 0;
        if (line > 0) {
            parse(line - 1);
            state = m_parser->state();
        }
        // Until a line is found that starts as it did before.
        while (line < count() && m_lines[line].state != state) {
            if (line > last) {
                m_lines.invalidate(line);
                break;
            }
            m_lines[line].state = state;
            parse(line);
            state = m_parser->state();
            ++line;
        }
        line = m_lines.nextUnknown(line);
    }
    m_dirty = line < count();
}

QStringView QCodeBuffer::syntaxLine(int line)
{
    const QStringView text = view(line);
    if (!m_parser || text.size() > LongestParsedLine) {
        if (!text.contains(CodeEditParser::Mark))
            return text;
        char16_t* out = parseBufferFor(text.size());
        std::replace_copy(text.utf16(), text.utf16() + text.size(), out, CodeEditParser::Mark,
                          char16_t(QChar::ReplacementCharacter));
        return {out, text.size()};
    }
    if (!contains(line))
        return {};
    syncHighlighting(line);
    m_parser->setState(m_lines[line].state, 0);
    char16_t* out = parseBufferFor(text.size());
    return {out, m_parser->parse(text, out)};
}
