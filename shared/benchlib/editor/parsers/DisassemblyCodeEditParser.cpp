#include "editor/parsers/DisassemblyCodeEditParser.h"

#include "editor/parsers/MarkedLine.h"

using namespace CharacterClass;

namespace {

constexpr char16_t EmDash = 0x2014;

/// "<name+offset>", if that comes next.
void copyReference(MarkedLine& line)
{
    line.setStyle(CodeEditParser::Text);
    line.copy();
    line.setStyle(CodeEditParser::Keyword);
    line.copyWhile([](char16_t c) { return c != u'>' && c != u'+' && c != u'-'; });
    if (!line.atEnd() && line.peek() != u'>') {
        line.setStyle(CodeEditParser::Literal);
        line.copyWhile([](char16_t c) { return c != u'>'; });
    }
    line.setStyle(CodeEditParser::Text);
    line.copy();
}

void copyInstruction(MarkedLine& line)
{
    line.setStyle(CodeEditParser::Disassembly);
    line.copyWhile(isSpace);
    line.copyWhile([](char16_t c) { return !isSpace(c); });
    while (!line.atEnd()) {
        if (line.peek() == u'<' && line.rest().contains(u'>')) {
            copyReference(line);
            continue;
        }
        line.setStyle(CodeEditParser::Text);
        line.copy();
    }
}

} // namespace

qsizetype DisassemblyCodeEditParser::parse(QStringView in, char16_t* out)
{
    MarkedLine line(in, out);
    m_state = 0;
    if (line.startsWith(u"    ") && line.peek(6) != u':') {
        copyInstruction(line);
    } else if (line.startsWith(u"<")) {
        line.setStyle(Keyword);
        line.copyRest();
    } else if (line.startsWith(u"---")) {
        line.setStyle(XMLMarkup);
        while (!line.atEnd()) {
            if (line.peek() == u'-')
                line.copyAs(EmDash);
            else
                line.copy();
        }
    } else {
        line.setStyle(Comment);
        line.copyRest();
    }
    return line.finish();
}
