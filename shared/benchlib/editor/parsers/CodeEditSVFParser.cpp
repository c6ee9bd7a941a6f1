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
            const QStringView rest = line.rest();
            qsizetype length = 1;
            while (length < rest.size()
                   && (isAlnum(rest[length].unicode()) || low(rest[length].unicode()) == '_'))
                ++length;
            const QString word = rest.left(length).toString().toLower();
            line.setStyle(m_keywords.contains(word)       ? Keyword
                              : m_controls.contains(word) ? PreprocessorControl
                                                          : Literal);
            line.copy(length);
        } else {
            line.setStyle(isPunct(c) ? Operator : Text);
            line.copy();
        }
    }
    return line.finish();
}
