#pragma once

#include "editor/parsers/CharacterClass.h"
#include "editor/parsers/CodeEditParser.h"

/// The line that is being parsed and the output with marks, in step.
class MarkedLine {
public:
    MarkedLine(QStringView in, char16_t* out) : m_in(in), m_begin(out), m_out(out) { }

    bool atEnd() const { return m_at >= m_in.size(); }
    /// The character that comes next, or one behind it; 0 beyond the end.
    char16_t peek(qsizetype ahead = 0) const
    {
        return m_at + ahead < m_in.size() ? m_in[m_at + ahead].unicode() : u'\0';
    }
    /// Asked for each character: two or three comparisons, without a call.
    bool startsWith(QStringView text) const
    {
        if (text.size() > remaining())
            return false;
        for (qsizetype i = 0; i < text.size(); ++i)
            if (m_in[m_at + i] != text[i])
                return false;
        return true;
    }
    qsizetype position() const { return m_at; }
    qsizetype remaining() const { return m_in.size() - m_at; }
    /// From a position up to the next character.
    QStringView since(qsizetype position) const { return m_in.sliced(position, m_at - position); }
    QStringView rest() const { return m_in.sliced(m_at); }

    /// The next character and those behind it for which the predicate holds.
    template <typename Predicate> QStringView word(Predicate isPart) const
    {
        const QStringView text = rest();
        qsizetype length = 1;
        while (length < text.size() && isPart(text[length].unicode()))
            ++length;
        return text.left(length);
    }

    int style() const { return m_style; }
    /// Gives what follows that style; a mark is written if it differs.
    void setStyle(int style)
    {
        if (style != m_style)
            mark(style);
    }
    /// Writes a mark in any case. Returns the place of its code, which may be rewritten.
    char16_t* mark(int style)
    {
        m_style = style;
        return writeMark(static_cast<char16_t>(style));
    }
    void setAttribute(char16_t attribute) { writeMark(attribute | CodeEditParser::SetAttributes); }
    void clearAttribute(char16_t attribute)
    {
        writeMark(attribute | CodeEditParser::ClearAttributes);
    }
    void band() { writeMark(CodeEditParser::Band); }

    void copy(qsizetype count = 1)
    {
        for (; count > 0 && !atEnd(); --count) {
            const char16_t c = m_in[m_at++].unicode();
            // A character that would be taken for a mark is shown as one that isn't there.
            *m_out++ = c == CodeEditParser::Mark ? char16_t(QChar::ReplacementCharacter) : c;
        }
    }
    void copyAs(char16_t c)
    {
        *m_out++ = c;
        ++m_at;
    }
    void copyRest() { copy(remaining()); }
    template <typename Predicate> void copyWhile(Predicate predicate)
    {
        while (!atEnd() && predicate(peek()))
            copy();
    }

    /// Ends the output; its length.
    qsizetype finish()
    {
        *m_out = 0;
        return m_out - m_begin;
    }

private:
    char16_t* writeMark(char16_t code)
    {
        *m_out++ = CodeEditParser::Mark;
        *m_out = code;
        return m_out++;
    }

    QStringView m_in;
    qsizetype m_at = 0;
    char16_t* m_begin;
    char16_t* m_out;
    int m_style = CodeEditParser::Text;
};
