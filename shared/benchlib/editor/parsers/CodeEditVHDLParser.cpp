#include "editor/parsers/CodeEditVHDLParser.h"

#include "editor/parsers/Keywords.h"
#include "editor/parsers/MarkedLine.h"

using namespace CharacterClass;

CodeEditVHDLParser::CodeEditVHDLParser() : CodeEditStandardParser(Keywords::vhdl()) { }

qsizetype CodeEditVHDLParser::parse(QStringView in, char16_t* out)
{
    MarkedLine line(in, out);
    bool afterWord = false;
    if (line.atEnd())
        m_state = Normal;
    while (!line.atEnd()) {
        const char16_t c = line.peek();
        const bool tick = c == u'\'' && afterWord;
        afterWord = false;
        if (m_state != Normal || c == u'"' || (c == u'\'' && !tick)) {
            copyLiteral(line);
        } else if (line.startsWith(u"--")) {
            copyLineComment(line);
        } else if (isAlpha(c) || low(c) == '_') {
            const QStringView word = line.word(isNamePart);
            line.setStyle(m_keywords.contains(word)       ? Keyword
                              : m_controls.contains(word) ? PreprocessorControl
                                                          : Text);
            line.copy(word.size());
            afterWord = true;
        } else if (isDigit(c)) {
            line.setStyle(Literal);
            line.copyWhile(isAlnum);
        } else {
            line.setStyle(isPunct(c) ? Operator : Text);
            line.copy();
        }
    }
    return line.finish();
}
