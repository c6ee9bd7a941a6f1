// Any text through the parser of every language, line by line.

#include "editor/parsers/CodeEditParser.h"
#include "editor/parsers/DisassemblyCodeEditParser.h"
#include "editor/parsers/LanguageRegistry.h"
#include "editor/parsers/SpellChecker.h"

#include <QStringList>

#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

/// The worst for the size of the output: each word is marked.
class NothingIsRight : public SpellChecker {
public:
    bool spell(QStringView) override { return false; }
};

void check(bool good)
{
    if (!good)
        std::abort();
}

char16_t shown(char16_t c)
{
    return c == CodeEditParser::Mark ? char16_t(QChar::ReplacementCharacter) : c;
}

/// The visible characters stay as they are, and the output within its bound.
void parseLine(CodeEditParser& parser, QStringView line, int& state, bool dashes)
{
    std::vector<char16_t> out(static_cast<std::size_t>(CodeEditParser::outputSize(line.size())));
    parser.setState(state, 0);
    const qsizetype size = parser.parse(line, out.data());
    check(size < static_cast<qsizetype>(out.size()) && out[static_cast<std::size_t>(size)] == 0);
    qsizetype at = 0;
    for (qsizetype i = 0; i < size; ++i) {
        const char16_t unit = out[static_cast<std::size_t>(i)];
        if (unit == CodeEditParser::Mark) {
            ++i;
            continue;
        }
        check(at < line.size());
        const char16_t expected = shown(line[at++].unicode());
        check(unit == expected || (dashes && expected == u'-' && unit == 0x2014));
    }
    check(at == line.size());
    state = parser.state();
    check((state >= 0 && state <= 4) || state == u'"' || state == u'\'');
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static NothingIsRight speller;
    static DisassemblyCodeEditParser disassembly;
    SpellChecker::setCurrent(&speller);
    // Half of the texts have characters of all planes.
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QString text = size % 2 == 0
        ? QString::fromUtf8(bytes)
        : QString(reinterpret_cast<const QChar*>(bytes.constData()), bytes.size() / 2);
    const QList<QStringView> lines = QStringView(text).split(u'\n');
    for (const QString& description : languages().registeredParserDescriptions()) {
        int state = 0;
        for (const QStringView line : lines)
            parseLine(*languages().parserForDescription(description), line, state, false);
    }
    int state = 0;
    for (const QStringView line : lines)
        parseLine(disassembly, line, state, true);
    return 0;
}
