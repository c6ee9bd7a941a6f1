#include "editor/parsers/CodeEditForthParser.h"

#include "editor/parsers/Keywords.h"
#include "editor/parsers/MarkedLine.h"
#include "editor/parsers/SpellChecker.h"

using namespace CharacterClass;
using namespace Qt::Literals::StringLiterals;

namespace {

/// Up to that character and with it, or to the end of the line. False in the second case.
bool copyThrough(MarkedLine& line, char16_t end, bool spelling = false)
{
    while (!line.atEnd()) {
        if (line.peek() == end) {
            line.copy();
            return true;
        }
        if (spelling && SpellChecker::isWordCharacter(line.peek()))
            SpellChecker::copyWord(line);
        else
            line.copy();
    }
    return false;
}

} // namespace

CodeEditForthParser::CodeEditForthParser()
    : CodeEditParser(Keywords::forthControls()),
      m_nameWords(Keywords::forthNameWords()),
      m_definingWords(Keywords::forthDefiningWords())
{
}

QString CodeEditForthParser::delimiters() const { return u"\\:\\;"_s; }

qsizetype CodeEditForthParser::parse(QStringView in, char16_t* out)
{
    MarkedLine line(in, out);
    QStringView previous;
    while (!line.atEnd()) {
        if (m_state == InComment) {
            line.setStyle(Comment);
            if (copyThrough(line, u'}', true))
                m_state = Normal;
            continue;
        }
        if (isSpace(line.peek())) {
            line.setStyle(Text);
            line.copyWhile(isSpace);
            continue;
        }
        const QStringView token = line.word([](char16_t in) { return !isSpace(in); });
        if (m_nameWords.contains(previous)) {
            // A name, whatever it looks like.
            line.setStyle(m_definingWords.contains(previous) ? Keyword : Text);
            line.copy(token.size());
            previous = {};
        } else {
            copyToken(line, token);
            previous = token;
        }
    }
    return line.finish();
}

void CodeEditForthParser::copyToken(MarkedLine& line, QStringView token)
{
    if (token == u"\\") {
        line.setStyle(Comment);
        copyThrough(line, u'\0', true);
    } else if (token == u"(") {
        line.setStyle(Comment);
        copyThrough(line, u')', true);
    } else if (token == u"{") {
        line.setStyle(Comment);
        m_state = InComment;
    } else if (token.startsWith(u'"')) {
        line.setStyle(Literal);
        line.copy();
        copyThrough(line, u'"');
    } else {
        line.setStyle(isKeyword(token) || m_controls.contains(token) ? PreprocessorControl : Text);
        line.copy(token.size());
        if (!token.endsWith(u'"') || line.atEnd())
            return;
        line.setStyle(Literal);
        copyThrough(line, u'"');
    }
}
