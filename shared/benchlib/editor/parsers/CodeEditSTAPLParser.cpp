#include "editor/parsers/CodeEditSTAPLParser.h"

#include "editor/parsers/Keywords.h"
#include "editor/parsers/MarkedLine.h"

using namespace CharacterClass;

namespace {

bool isWordPart(char16_t c) { return isAlnum(c) || low(c) == '_' || low(c) == '$'; }

} // namespace

CodeEditSTAPLParser::CodeEditSTAPLParser() : CodeEditStandardParser(Keywords::stapl()) { }

qsizetype CodeEditSTAPLParser::parse(QStringView in, char16_t* out)
{
    MarkedLine line(in, out);
    char16_t* lastText = nullptr;
    m_state = Normal;
    while (!line.atEnd()) {
        const char16_t c = line.peek();
        if (c == u'\'') {
            copyLineComment(line);
        } else if (c == u'"') {
            line.setStyle(Literal);
            line.copy();
            line.copyWhile([](char16_t in) { return in != u'"'; });
            line.copy();
        } else if (isDigit(c) || c == u'$') {
            line.setStyle(Literal);
            line.copy();
            line.copyWhile(isAlnum);
        } else if (isAlpha(c) || low(c) == '_') {
            const QStringView word = line.word(isWordPart);
            const QString key = word.toString().toUpper();
            lastText = line.mark(isKeyword(key) ? Keyword : Text);
            line.copy(word.size());
        } else if (isPunct(c)) {
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
