#include "target/TargetIOPrint.h"

#include "target/TargetIOConversion.h"

#include <algorithm>
#include <cstdio>

namespace {

using Length = TargetIOConversion::Length;

constexpr int widest = 1024;
/// A double has 309 digits in front of the point; behind it stands the precision.
constexpr std::size_t longestConversion = 2 * widest + 512;

template <class Value>
std::string convert(const TargetIOConversion& conversion, const char* hostLength, Value value)
{
    std::string spec = "%" + conversion.flags;
    if (conversion.width >= 0)
        spec += std::to_string(conversion.width);
    if (conversion.precision >= 0)
        spec += "." + std::to_string(conversion.precision);
    spec += hostLength;
    spec += conversion.letter;
    char buffer[longestConversion];
    const int length = std::snprintf(buffer, sizeof buffer, spec.c_str(), value);
    return {buffer,
            static_cast<std::size_t>(std::clamp(length, 0, static_cast<int>(sizeof buffer) - 1))};
}

std::int64_t signedArgument(Length length, TargetIOArguments& arguments)
{
    switch (length) {
    case Length::Char: return static_cast<signed char>(arguments.getIntArg());
    case Length::Short: return static_cast<short>(arguments.getIntArg());
    case Length::Int: return arguments.getIntArg();
    case Length::Long: return arguments.getLongArg();
    case Length::LongLong: return arguments.getLongLongArg();
    }
    return 0;
}

std::uint64_t unsignedArgument(Length length, TargetIOArguments& arguments)
{
    switch (length) {
    case Length::Char: return arguments.getUnsignedArg() & 0xFF;
    case Length::Short: return arguments.getUnsignedArg() & 0xFFFF;
    case Length::Int: return arguments.getUnsignedArg();
    case Length::Long: return static_cast<std::uint32_t>(arguments.getLongArg());
    case Length::LongLong: return static_cast<std::uint64_t>(arguments.getLongLongArg());
    }
    return 0;
}

std::string convertString(const TargetIOConversion& conversion, TargetIOArguments& arguments)
{
    const std::uint32_t address = arguments.getPtrArg();
    const std::string text =
        address == 0 ? "(null)" : readTargetString(arguments.memory(), address);
    return convert(conversion, "", text.c_str());
}

void storeCount(Length length, std::size_t count, TargetIOArguments& arguments)
{
    const std::uint32_t address = arguments.getPtrArg();
    const unsigned sizes[] = {1, 2, arguments.memory().wordLength(), 4, 8};
    arguments.memory().pokeNumber(address, sizes[static_cast<int>(length)], count);
}

void resolveStars(TargetIOConversion& conversion, TargetIOArguments& arguments)
{
    if (conversion.width == TargetIOConversion::FromArgument) {
        const std::int64_t width = arguments.getIntArg();
        if (width < 0)
            conversion.flags += '-';
        conversion.width =
            static_cast<int>(std::min<std::int64_t>(width < 0 ? -width : width, widest));
    }
    if (conversion.precision == TargetIOConversion::FromArgument)
        conversion.precision =
            static_cast<int>(std::clamp<std::int64_t>(arguments.getIntArg(), -1, widest));
}

std::string printOne(TargetIOConversion conversion, TargetIOArguments& arguments, std::size_t soFar)
{
    resolveStars(conversion, arguments);
    switch (conversion.letter) {
    case 'd':
    case 'i':
        return convert(conversion, "ll",
                       static_cast<long long>(signedArgument(conversion.length, arguments)));
    case 'u':
    case 'o':
    case 'x':
    case 'X':
        return convert(
            conversion, "ll",
            static_cast<unsigned long long>(unsignedArgument(conversion.length, arguments)));
    case 'c': return convert(conversion, "", static_cast<int>(arguments.getIntArg()));
    case 'e':
    case 'E':
    case 'f':
    case 'F':
    case 'g':
    case 'G':
    case 'a':
    case 'A': return convert(conversion, "", arguments.getDoubleArg());
    case 's': return convertString(conversion, arguments);
    case 'p': conversion.letter = 'x'; return convert(conversion, "", arguments.getPtrArg());
    case 'n': storeCount(conversion.length, soFar, arguments); return {};
    case '%': return "%";
    case 0: return {};
    default: return {conversion.letter};
    }
}

} // namespace

std::string printTargetFormat(const std::string& format, TargetIOArguments& arguments)
{
    std::string text;
    for (std::size_t position = 0; position < format.size();) {
        const char c = format[position++];
        if (c == '%')
            text += printOne(parsePrintConversion(format, position), arguments, text.size());
        else
            text += c;
    }
    return text;
}
