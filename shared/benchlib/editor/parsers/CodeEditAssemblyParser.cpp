#include "editor/parsers/CodeEditAssemblyParser.h"

#include "editor/parsers/Keywords.h"
#include "editor/parsers/MarkedLine.h"

using namespace CharacterClass;

namespace {

bool isWordStart(char16_t c) { return isAlpha(c) || low(c) == '.'; }

bool isWordPart(char16_t c)
{
    return isAlnum(c) || low(c) == '_' || low(c) == '.' || low(c) == '$' || low(c) == '@';
}

} // namespace

CodeEditAssemblyParser::CodeEditAssemblyParser()
    : CodeEditStandardParser({}, Keywords::assemblyRegisters())
{
}

qsizetype CodeEditAssemblyParser::parse(QStringView in, char16_t* out)
{
    MarkedLine line(in, out);
    if (m_state == Normal && line.peek() == u'#') {
        line.setStyle(PreprocessorControl);
        line.copyRest();
        return line.finish();
    }
    if (line.atEnd() && m_state != InComment)
        m_state = Normal;
    int spaces = 0;
    while (!line.atEnd()) {
        const char16_t c = line.peek();
        if (m_state == InComment || (m_state == Normal && line.startsWith(u"/*"))) {
            copyComment(line);
        } else if (m_state != Normal || c == u'"' || c == u'\'') {
            copyLiteral(line);
        } else if (c == u';' || line.startsWith(u"//")) {
            copyLineComment(line);
        } else if (isDigit(c) || (c == u'$' && isHexDigit(line.peek(1)) && line.peek(1) != 0)) {
            line.setStyle(Literal);
            line.copy();
            line.copyWhile(isAlnum);
        } else if (isWordStart(c)) {
            const QStringView word = line.word(isWordPart);
            const bool isRegister = m_controls.contains(word);
            line.setStyle(spaces == 1 ? Keyword : isRegister ? Register : Text);
            line.copy(word.size());
        } else if (isSpace(c)) {
            ++spaces;
            line.setStyle(Text);
            line.copyWhile(isSpace);
        } else {
            line.setStyle(isPunct(c) ? Operator : Text);
            line.copy();
        }
    }
    return line.finish();
}
