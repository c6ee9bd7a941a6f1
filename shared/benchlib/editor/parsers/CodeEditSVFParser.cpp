#include "editor/parsers/CodeEditSVFParser.h"

#include "editor/parsers/Keywords.h"
#include "editor/parsers/MarkedLine.h"

using namespace CharacterClass;

CodeEditSVFParser::CodeEditSVFParser()
    : CodeEditStandardParser(Keywords::svf(), Keywords::svfStates())
{
}

qsizetype CodeEditSVFParser::parse(QStringView in, char16_t* out)
{
    MarkedLine line(in, out);
    m_state = Normal;
    while (!line.atEnd()) {
        const char16_t c = line.peek();
        if (c == u'!' || line.startsWith(u"//")) {
            copyLineComment(line);
        } else if (isAlnum(c) || low(c) == '_') {
            const QStringView word = line.word(isNamePart);
            const QString key = word.toString().toLower();
            line.setStyle(m_keywords.contains(key)       ? Keyword
                              : m_controls.contains(key) ? PreprocessorControl
                                                         : Literal);
            line.copy(word.size());
        } else {
            line.setStyle(isPunct(c) ? Operator : Text);
            line.copy();
        }
    }
    return line.finish();
}
