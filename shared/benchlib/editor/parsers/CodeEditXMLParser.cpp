#include "editor/parsers/CodeEditXMLParser.h"

#include "editor/parsers/MarkedLine.h"
#include "editor/parsers/SpellChecker.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using Parser = CodeEditXMLParser;

constexpr int StateStyles[] = {Parser::Text,    Parser::Comment, Parser::XMLMarkup,
                               Parser::Keyword, Parser::Literal, Parser::XMLMarkup};

/// What ends a state or begins another, in the order in which it is looked for.
struct Step {
    int state;
    QStringView text;
    int style; ///< of that text
    int next;
};
constexpr Step Steps[] = {
    {Parser::Normal, u"<!--", Parser::Keyword, Parser::InComment},
    {Parser::Normal, u"</", Parser::Keyword, Parser::InTag},
    {Parser::Normal, u"<?", Parser::Keyword, Parser::InInstruction},
    {Parser::Normal, u"<", Parser::Keyword, Parser::InTag},
    {Parser::Normal, u"&", Parser::XMLMarkup, Parser::InEntity},
    {Parser::InComment, u"-->", Parser::Keyword, Parser::Normal},
    {Parser::InTag, u"\"", Parser::Literal, Parser::InValue},
    {Parser::InTag, u"/>", Parser::Keyword, Parser::Normal},
    {Parser::InTag, u">", Parser::Keyword, Parser::Normal},
    {Parser::InInstruction, u"?>", Parser::Keyword, Parser::Normal},
    {Parser::InValue, u"\"", Parser::Literal, Parser::InTag},
    {Parser::InEntity, u";", Parser::XMLMarkup, Parser::Normal},
};

} // namespace

QString CodeEditXMLParser::delimiters() const { return u"\\<\\>"_s; }

qsizetype CodeEditXMLParser::parse(QStringView in, char16_t* out)
{
    MarkedLine line(in, out);
    while (!line.atEnd()) {
        const Step* found = nullptr;
        for (const Step& step : Steps) {
            if (step.state == m_state && line.startsWith(step.text)) {
                found = &step;
                break;
            }
        }
        if (found) {
            line.setStyle(found->style);
            line.copy(found->text.size());
            m_state = found->next;
            continue;
        }
        line.setStyle(StateStyles[m_state]);
        if (m_state == InComment && SpellChecker::isWordCharacter(line.peek()))
            SpellChecker::copyWord(line);
        else
            line.copy();
    }
    if (m_state == InEntity)
        m_state = Normal;
    return line.finish();
}
