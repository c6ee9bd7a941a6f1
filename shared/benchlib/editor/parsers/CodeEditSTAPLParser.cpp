#include "editor/parsers/CodeEditSTAPLParser.h"

#include "editor/parsers/Keywords.h"
#include "editor/parsers/MarkedLine.h"

#include <algorithm>

using namespace CharacterClass;

namespace {

bool isWordPart(char16_t c) { return isAlnum(c) || low(c) == '_' || low(c) == '$'; }

bool isHexNumber(QStringView word)
{
    return std::all_of(word.begin(), word.end(), [](QChar c) { return isHexDigit(c.unicode()); });
}

} // namespace

CodeEditSTAPLParser::CodeEditSTAPLParser() : CodeEditStandardParser(Keywords::stapl()) { }

qsizetype CodeEditSTAPLParser::parse(QStringView in, char16_t* out)
{
    MarkedLine line(in, out);
    char16_t* lastText = nullptr;
    m_state = Normal;
    while (!line.atEnd()) {
        const char16_t c = line.peek();
        // Data may be written in groups of digits; what separates them doesn't end the number.
        const bool isGroup =
            m_state == InNumber && isHexDigit(c) && isHexNumber(line.word(isWordPart));
        if (c == u'\'') {
            copyLineComment(line);
        } else if (c == u'"') {
            line.setStyle(Literal);
            line.copy();
            line.copyWhile([](char16_t in) { return in != u'"'; });
            line.copy();
        } else if (isDigit(c) || c == u'$' || isGroup) {
            m_state = InNumber;
            line.setStyle(Literal);
            line.copy();
            line.copyWhile(isAlnum);
        } else if (isAlpha(c) || low(c) == '_') {
            const QStringView word = line.word(isWordPart);
            const QString key = word.toString().toUpper();
            lastText = line.mark(isKeyword(key) ? Keyword : Text);
            line.copy(word.size());
        } else if (isPunct(c)) {
            m_state = Normal;
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
    m_state = Normal;
    return line.finish();
}
