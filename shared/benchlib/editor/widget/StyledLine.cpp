#include "editor/widget/StyledLine.h"

#include "editor/parsers/CodeEditParser.h"

namespace {

/// From here on there are characters that don't fill exactly one column. What the fonts of a fixed
/// pitch are sure to have stands below.
constexpr char16_t FirstComplex = 0x300;

} // namespace

StyledLine StyledLine::from(QStringView syntaxLine)
{
    StyledLine result;
    result.text.reserve(syntaxLine.size());
    Run run{0, 0, CodeEditParser::Text, 0};
    const auto startRun = [&](int style, char16_t attributes) {
        const int at = static_cast<int>(result.text.size());
        run.length = at - run.start;
        if (run.length > 0)
            result.runs.append(run);
        run = {at, 0, style, attributes};
    };
    for (qsizetype i = 0; i < syntaxLine.size(); ++i) {
        const char16_t unit = syntaxLine[i].unicode();
        if (unit != CodeEditParser::Mark) {
            result.isComplex |= unit >= FirstComplex;
            result.text += QChar(unit);
            continue;
        }
        if (++i == syntaxLine.size())
            break;
        const char16_t code = syntaxLine[i].unicode();
        const char16_t bits = code & 0xFF00;
        if (code == CodeEditParser::Band && result.text.isEmpty())
            result.band = true;
        else if (code < CodeEditParser::SyntaxElementCount)
            startRun(code, run.attributes);
        else if ((code & 0xFF) == CodeEditParser::SetAttributes)
            startRun(run.style, run.attributes | bits);
        else if ((code & 0xFF) == CodeEditParser::ClearAttributes)
            startRun(run.style, static_cast<char16_t>(run.attributes & ~bits));
    }
    startRun(CodeEditParser::Text, 0);
    return result;
}

StyledLine StyledLine::plain(QStringView text)
{
    StyledLine result;
    result.text = QString::fromRawData(text.data(), text.size());
    if (!text.isEmpty())
        result.runs.append({0, static_cast<int>(text.size()), CodeEditParser::Text, 0});
    return result;
}
