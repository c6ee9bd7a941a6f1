#include "target/TargetIOConversion.h"

#include <algorithm>
#include <cctype>

namespace {

constexpr int widest = 1024;

char peekAt(std::string_view text, std::size_t position)
{
    return position < text.size() ? text[position] : '\0';
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

int parseNumber(std::string_view text, std::size_t& position)
{
    int value = 0;
    while (isDigit(peekAt(text, position)))
        value = std::min(widest, value * 10 + (text[position++] - '0'));
    return value;
}

int parseNumberOrStar(std::string_view text, std::size_t& position)
{
    if (peekAt(text, position) != '*')
        return parseNumber(text, position);
    ++position;
    return TargetIOConversion::FromArgument;
}

TargetIOConversion::Length parseLength(std::string_view text, std::size_t& position)
{
    using Length = TargetIOConversion::Length;
    Length length = Length::Int;
    for (;; ++position) {
        switch (peekAt(text, position)) {
        case 'h': length = length == Length::Short ? Length::Char : Length::Short; break;
        case 'l': length = length == Length::Long ? Length::LongLong : Length::Long; break;
        case 'L':
        case 'q':
        case 'j': length = Length::LongLong; break;
        case 'z':
        case 't': break;
        default: return length;
        }
    }
}

std::string parseSet(std::string_view text, std::size_t& position)
{
    std::string set;
    if (peekAt(text, position) == '^')
        set += text[position++];
    bool first = true;
    while (position < text.size() && (first || text[position] != ']')) {
        set += text[position++];
        first = false;
    }
    ++position;
    return set;
}

} // namespace

TargetIOConversion parsePrintConversion(std::string_view format, std::size_t& position)
{
    TargetIOConversion conversion;
    while (position < format.size()
           && std::string_view("-+ #0").find(format[position]) != std::string_view::npos) {
        if (conversion.flags.find(format[position]) == std::string::npos)
            conversion.flags += format[position];
        ++position;
    }
    if (isDigit(peekAt(format, position)) || peekAt(format, position) == '*')
        conversion.width = parseNumberOrStar(format, position);
    if (peekAt(format, position) == '.') {
        ++position;
        conversion.precision = parseNumberOrStar(format, position);
    }
    conversion.length = parseLength(format, position);
    conversion.letter = peekAt(format, position);
    if (conversion.letter != 0)
        ++position;
    return conversion;
}

TargetIOConversion parseScanConversion(std::string_view format, std::size_t& position)
{
    TargetIOConversion conversion;
    if (peekAt(format, position) == '*') {
        conversion.suppress = true;
        ++position;
    }
    if (isDigit(peekAt(format, position)))
        conversion.width = parseNumber(format, position);
    conversion.length = parseLength(format, position);
    conversion.letter = peekAt(format, position);
    if (conversion.letter != 0)
        ++position;
    if (conversion.letter == '[')
        conversion.set = parseSet(format, position);
    return conversion;
}
