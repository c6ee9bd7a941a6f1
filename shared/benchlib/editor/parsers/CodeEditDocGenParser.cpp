#include "editor/parsers/CodeEditDocGenParser.h"

#include "editor/parsers/CodeEditStandardParser.h"
#include "editor/parsers/Keywords.h"
#include "editor/parsers/MarkedLine.h"
#include "editor/parsers/SpellChecker.h"

using namespace CharacterClass;
using Parser = CodeEditParser;

namespace {

bool isNameCharacter(char16_t c) { return isAlnum(c) || low(c) == '_'; }

/// One line of documentation.
class DocGenLine {
public:
    DocGenLine(MarkedLine& line, bool inComment, int& state)
        : m_line(line),
          m_inComment(inComment),
          m_state(state),
          m_plain(inComment ? Parser::Comment : Parser::Text)
    {
    }

    void scan()
    {
        m_line.setStyle(m_plain);
        while (!atEnd()) {
            const char16_t c = m_line.peek();
            if (c == u'&')
                copyMarkup(u';');
            else if (c == u'<')
                copyMarkup(u'>');
            else if (c == u'\\')
                copyCommand();
            else if (m_state == CodeEditDocGenParser::InCode)
                copyAs(Parser::DocGenVerbatim);
            else if (SpellChecker::isWordCharacter(c))
                copyWord();
            else
                copyAs(m_plain);
        }
    }

private:
    bool atEnd() const { return m_line.atEnd() || (m_inComment && m_line.startsWith(u"*/")); }
    void copyAs(int style)
    {
        m_line.setStyle(style);
        m_line.copy();
    }
    void copyWord()
    {
        m_line.setStyle(m_plain);
        SpellChecker::copyWord(m_line);
    }
    template <typename Predicate> void copyWhile(Predicate predicate)
    {
        while (!atEnd() && predicate(m_line.peek()))
            m_line.copy();
    }

    void copyMarkup(char16_t end)
    {
        m_line.setStyle(Parser::XMLMarkup);
        copyWhile([end](char16_t c) { return c != end; });
        if (!atEnd())
            m_line.copy();
    }

    /// The name behind the backslash, without moving on.
    QStringView commandName() const
    {
        const QStringView rest = m_line.rest();
        qsizetype end = 1;
        if (end < rest.size() && isAlpha(rest[end].unicode()))
            while (end < rest.size() && isAlnum(rest[end].unicode()))
                ++end;
        return rest.sliced(1, end - 1);
    }

    void copyCommand()
    {
        static const KeywordSet wordCommands(Keywords::docGenWordCommands());
        static const KeywordSet lineCommands(Keywords::docGenLineCommands());
        const QStringView name = commandName();
        if (name == u"split" || name == u"title")
            m_line.band();
        m_line.setStyle(Parser::DocGenKeyword);
        m_line.copy(1 + name.size());
        if (name == u"code")
            m_state = CodeEditDocGenParser::InCode;
        else if (name == u"endcode")
            m_state = m_inComment ? int(CodeEditStandardParser::InDocumentation)
                                  : int(CodeEditDocGenParser::Normal);
        else if (name == u"ignore")
            copyIgnoredWord();
        else if (wordCommands.contains(name))
            copyWordArgument();
        else if (lineCommands.contains(name))
            copyLineArgument(name != u"title");
    }

    void copySpace()
    {
        m_line.setStyle(Parser::Comment);
        copyWhile(isSpace);
    }

    void copyIgnoredWord()
    {
        copySpace();
        m_line.setStyle(Parser::DocGenArgument);
        const qsizetype start = m_line.position();
        copyWhile(isNameCharacter);
        if (m_line.position() > start)
            SpellChecker::ignore(m_line.since(start));
    }

    void copyWordArgument()
    {
        if (!atEnd() && m_line.peek() == u'{') {
            m_line.copy();
            m_line.setStyle(Parser::DocGenArgument);
            copyWhile([](char16_t c) { return c != u'}'; });
            if (!atEnd())
                copyAs(Parser::DocGenKeyword);
            return;
        }
        copySpace();
        if (atEnd())
            return;
        m_line.setStyle(Parser::DocGenArgument);
        if (isNameCharacter(m_line.peek()))
            copyWhile(isNameCharacter);
        else
            copyWhile([](char16_t c) { return !isSpace(c) && c != u'\\'; });
    }

    void copyLineArgument(bool bold)
    {
        m_line.setStyle(Parser::DocGenArgument);
        if (bold)
            m_line.setAttribute(Parser::Bold);
        copyWhile([](char16_t c) { return c != u'\\'; });
        if (bold)
            m_line.clearAttribute(Parser::Bold);
    }

    MarkedLine& m_line;
    bool m_inComment;
    int& m_state;
    int m_plain;
};

} // namespace

qsizetype CodeEditDocGenParser::parse(QStringView in, char16_t* out)
{
    MarkedLine line(in, out);
    scan(line, false, m_state);
    return line.finish();
}

void CodeEditDocGenParser::scan(MarkedLine& line, bool inComment, int& state)
{
    DocGenLine(line, inComment, state).scan();
}
