#pragma once

#include "editor/parsers/KeywordSet.h"

#include <QString>
#include <QStringList>

/// Turns one line of source into the same line with marks of style between its characters.
///
/// A parser keeps nothing from line to line but one integer, its state, which the owner of the
/// lines stores with each. One object serves all documents of a language in turn.
class CodeEditParser {
public:
    /// The style of a stretch of text. Colour schemes have one text style for each.
    enum SyntaxElement {
        Text,
        Literal,
        Comment,
        Keyword,
        Disassembly,
        XMLMarkup,
        PreprocessorControl,
        Operator,
        Register,
        Function,
        Fixme,
        DocGenKeyword,
        DocGenArgument,
        DocGenVerbatim,
    };
    static constexpr int SyntaxElementCount = 14;

    /// What introduces a mark in the output, which is this unit and then a code. A code below
    /// SyntaxElementCount gives the style of what follows; one whose low byte is SetAttributes or
    /// ClearAttributes changes the attribute word by its high byte; any other is to be skipped.
    static constexpr char16_t Mark = 0xFDD0;
    static constexpr char16_t SetAttributes = 0x0F;
    static constexpr char16_t ClearAttributes = 0x10;
    /// Bits of the attribute word, which is 0 at the start of a line.
    static constexpr char16_t SpellingError = 0x100;
    static constexpr char16_t Bold = 0x200;
    /// As the first mark of a line: the line has a band behind it.
    static constexpr char16_t Band = 0x40F;

    /// What the output of a line of that length takes at most.
    static constexpr qsizetype outputSize(qsizetype length) { return length * 4 + 10; }

    CodeEditParser() = default;
    explicit CodeEditParser(const QStringList& keywords) : m_keywords(keywords) { }
    CodeEditParser(const QStringList& keywords, const QStringList& controls)
        : m_keywords(keywords),
          m_controls(controls)
    {
    }
    CodeEditParser(const CodeEditParser&) = delete;
    CodeEditParser& operator=(const CodeEditParser&) = delete;

    /// Writes the line with its marks to `out`, which has room for outputSize units, and a NUL
    /// behind it. Returns the number of units ahead of the NUL. setState is called first, each
    /// time.
    virtual qsizetype parse(QStringView in, char16_t* out) = 0;
    /// The characters that are matched as pairs, an opening and a closing one in turn, escaped for
    /// use between the brackets of a regular expression.
    virtual QString delimiters() const;
    virtual ~CodeEditParser() = default;

    void setState(int state, int depth)
    {
        m_state = state;
        m_depth = depth;
    }
    /// The state that the next line starts with.
    int state() const { return m_state; }
    /// The number of "{" in the line less that of "}".
    int depth() const { return m_depth; }

    const QStringList& keywords() const { return m_keywords.words(); }
    const QStringList& controls() const { return m_controls.words(); }
    void setUserKeywords(const QStringList& keywords) { m_userKeywords = KeywordSet(keywords); }

protected:
    int m_state = 0;
    int m_depth = 0;
    bool isKeyword(QStringView word) const
    {
        return m_keywords.contains(word) || m_userKeywords.contains(word);
    }

    KeywordSet m_keywords;
    KeywordSet m_userKeywords;
    KeywordSet m_controls;
};
