#include "editor/parsers/CodeEditStandardParser.h"

#include "editor/parsers/CodeEditDocGenParser.h"
#include "editor/parsers/Keywords.h"
#include "editor/parsers/MarkedLine.h"
#include "editor/parsers/SpellChecker.h"

using namespace CharacterClass;

namespace {

constexpr char16_t Backslash = u'\\';

bool isQuote(int c) { return c == u'"' || c == u'\''; }

} // namespace

CodeEditCParser::CodeEditCParser() : CodeEditStandardParser(Keywords::c()) { }
CodeEditJavaParser::CodeEditJavaParser() : CodeEditStandardParser(Keywords::java()) { }
CodeEditJavaScriptParser::CodeEditJavaScriptParser()
    : CodeEditStandardParser(Keywords::javaScript())
{
}
CodeEditBatchParser::CodeEditBatchParser() : CodeEditStandardParser(Keywords::batch()) { }

qsizetype CodeEditStandardParser::parse(QStringView in, char16_t* out)
{
    MarkedLine line(in, out);
    // Where the style of the last plain text or word stands: a bracket makes it a function's.
    char16_t* lastText = nullptr;
    if (line.atEnd() && isQuote(m_state))
        m_state = Normal;
    while (!line.atEnd()) {
        const char16_t c = line.peek();
        if (m_state == InDocumentation || m_state == InDocumentedCode
            || (m_state == Normal && line.startsWith(u"/*!"))) {
            copyDocumentation(line);
        } else if (m_state == InComment || (m_state == Normal && line.startsWith(u"/*"))) {
            copyComment(line);
        } else if (m_state != Normal || isQuote(c)) {
            copyLiteral(line);
        } else if (c == u'#') {
            line.setStyle(PreprocessorControl);
            line.copy();
            line.copyWhile(isAlnum);
            // Two marks for each of a row of "#" would be more than the output has room for.
            if (line.peek() != u'#')
                line.setStyle(Text);
        } else if (line.startsWith(u"//")) {
            copyLineComment(line);
        } else if (isAlpha(c) || low(c) == '_') {
            const QStringView word = line.word(isNamePart);
            lastText = line.mark(styleOf(word));
            line.copy(word.size());
        } else if (isDigit(c)) {
            line.setStyle(Literal);
            line.copyWhile(isAlnum);
        } else if (isPunct(c) && low(c) != '$' && low(c) != '@') {
            m_depth += c == u'{' ? 1 : c == u'}' ? -1 : 0;
            if (c == u'(' && line.style() == Text && lastText)
                *lastText = Function;
            line.setStyle(Operator);
            line.copy();
        } else {
            if (line.style() != Text)
                lastText = line.mark(Text);
            line.copy();
        }
    }
    return line.finish();
}

int CodeEditStandardParser::styleOf(QStringView word) const
{
    if (isKeyword(word))
        return Keyword;
    return m_controls.contains(word) ? PreprocessorControl : Text;
}

void CodeEditStandardParser::copyDocumentation(MarkedLine& line)
{
    line.setStyle(Comment);
    if (m_state == Normal)
        m_state = InDocumentation;
    CodeEditDocGenParser::scan(line, true, m_state);
    if (m_state == InDocumentedCode)
        line.setStyle(DocGenKeyword);
    else
        line.setStyle(Comment);
    if (line.atEnd())
        return;
    line.copy(2);
    m_state = Normal;
}

void CodeEditStandardParser::copyComment(MarkedLine& line)
{
    line.setStyle(Comment);
    if (m_state == Normal) {
        line.copy(2);
        m_state = InComment;
    }
    while (!line.atEnd()) {
        if (line.startsWith(u"*/")) {
            line.copy(2);
            m_state = Normal;
            return;
        }
        if (SpellChecker::isWordCharacter(line.peek()))
            SpellChecker::copyWord(line);
        else
            line.copy();
    }
}

void CodeEditStandardParser::copyLineComment(MarkedLine& line)
{
    line.setStyle(Comment);
    while (!line.atEnd()) {
        if (SpellChecker::isWordCharacter(line.peek()))
            SpellChecker::copyWord(line);
        else
            line.copy();
    }
}

void CodeEditStandardParser::copyLiteral(MarkedLine& line)
{
    line.setStyle(Literal);
    if (m_state == Normal) {
        m_state = line.peek();
        line.copy();
    }
    // Lines are joined before anything else is made of them, so this backslash can't be quoted.
    const bool goesOn = line.rest().endsWith(Backslash);
    while (!line.atEnd()) {
        const char16_t c = line.peek();
        line.copy(c == Backslash ? 2 : 1);
        if (c == m_state) {
            m_state = Normal;
            return;
        }
    }
    if (!goesOn)
        m_state = Normal;
}
