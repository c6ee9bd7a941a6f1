#include "target/TargetIOScan.h"

#include "target/TargetIOConversion.h"

#include <bit>
#include <cctype>
#include <cstdlib>
#include <limits>

namespace {

enum class Outcome { Stored, Passed, Mismatch, InputEnded };

class Scanner {
public:
    Scanner(TargetIOScanSource& source, TargetIOArguments& arguments)
        : m_source(source),
          m_arguments(arguments)
    {
    }

    int run(const std::string& format)
    {
        int items = 0;
        for (std::size_t position = 0; position < format.size();) {
            const Outcome outcome = next(format, position);
            if (outcome == Outcome::InputEnded)
                return items > 0 ? items : -1;
            if (outcome == Outcome::Mismatch)
                return items;
            items += outcome == Outcome::Stored ? 1 : 0;
        }
        return items;
    }

private:
    Outcome next(const std::string& format, std::size_t& position)
    {
        const char c = format[position++];
        if (isSpace(c)) {
            skipSpace();
            return Outcome::Passed;
        }
        return c == '%' ? convert(parseScanConversion(format, position)) : literal(c);
    }

    static bool isSpace(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

    void skipSpace()
    {
        while (isSpace(m_source.peek()))
            m_source.take();
    }

    Outcome literal(char c)
    {
        if (m_source.peek() == TargetIOScanSource::End)
            return Outcome::InputEnded;
        if (m_source.peek() != static_cast<unsigned char>(c))
            return Outcome::Mismatch;
        m_source.take();
        return Outcome::Passed;
    }

    Outcome convert(const TargetIOConversion& conversion)
    {
        if (conversion.letter == 'n') {
            store(conversion, m_source.taken());
            return Outcome::Passed;
        }
        if (conversion.letter != 'c' && conversion.letter != '[')
            skipSpace();
        if (conversion.letter == '%')
            return literal('%');
        if (m_source.peek() == TargetIOScanSource::End)
            return Outcome::InputEnded;
        switch (conversion.letter) {
        case 'd':
        case 'u': return integer(conversion, 10);
        case 'i': return integer(conversion, 0);
        case 'o': return integer(conversion, 8);
        case 'x':
        case 'X':
        case 'p': return integer(conversion, 16);
        case 'e':
        case 'E':
        case 'f':
        case 'F':
        case 'g':
        case 'G':
        case 'a':
        case 'A': return real(conversion);
        case 'c':
        case 's':
        case '[': return text(conversion);
        default: return Outcome::Mismatch;
        }
    }

    /// Takes characters while `accepts` does, up to the width.
    template <class Accepts> std::string takeWhile(int width, Accepts accepts)
    {
        constexpr std::size_t longest = 4096;
        const std::size_t limit = width > 0 ? static_cast<std::size_t>(width) : longest;
        std::string token;
        while (token.size() < limit && m_source.peek() != TargetIOScanSource::End
               && accepts(token, m_source.peek()))
            token += static_cast<char>(m_source.take());
        return token;
    }

    static bool continuesInteger(const std::string& token, int c, int base)
    {
        if (c == '+' || c == '-')
            return token.empty();
        const bool afterZero = token == "0" || token == "+0" || token == "-0";
        if ((c == 'x' || c == 'X') && (base == 0 || base == 16))
            return afterZero;
        if (base == 8)
            return c >= '0' && c <= '7';
        const bool hexadecimal = base == 16 || token.find_first_of("xX") != std::string::npos;
        return hexadecimal ? std::isxdigit(c) != 0 : c >= '0' && c <= '9';
    }

    Outcome integer(const TargetIOConversion& conversion, int base)
    {
        const std::string token = takeWhile(conversion.width, [&](const std::string& soFar, int c) {
            return continuesInteger(soFar, c, base);
        });
        if (token.find_first_of("0123456789abcdefABCDEF") == std::string::npos)
            return Outcome::Mismatch;
        const bool isSigned = conversion.letter == 'd' || conversion.letter == 'i';
        return store(conversion,
                     isSigned
                         ? static_cast<std::uint64_t>(std::strtoll(token.c_str(), nullptr, base))
                         : std::strtoull(token.c_str(), nullptr, base));
    }

    Outcome real(const TargetIOConversion& conversion)
    {
        const std::string token = takeWhile(conversion.width, [](const std::string& soFar, int c) {
            const bool afterExponent =
                !soFar.empty() && (soFar.back() == 'e' || soFar.back() == 'E');
            if (c == '+' || c == '-')
                return soFar.empty() || afterExponent;
            return std::isdigit(c) != 0 || c == '.' || c == 'e' || c == 'E';
        });
        char* end = nullptr;
        const double value = std::strtod(token.c_str(), &end);
        if (end == token.c_str())
            return Outcome::Mismatch;
        if (conversion.suppress)
            return Outcome::Passed;
        const bool isDouble = conversion.length >= TargetIOConversion::Length::Long;
        const std::uint64_t bits = isDouble
            ? std::bit_cast<std::uint64_t>(value)
            : std::bit_cast<std::uint32_t>(static_cast<float>(value));
        m_arguments.memory().pokeNumber(m_arguments.getPtrArg(), isDouble ? 8 : 4, bits);
        return Outcome::Stored;
    }

    static bool inSet(const std::string& set, int c)
    {
        const bool excludes = !set.empty() && set[0] == '^';
        bool found = false;
        for (std::size_t i = excludes ? 1 : 0; i < set.size(); ++i) {
            const bool range = i + 2 < set.size() && set[i + 1] == '-';
            const int low = static_cast<unsigned char>(set[i]);
            const int high = range ? static_cast<unsigned char>(set[i + 2]) : low;
            found = found || (c >= low && c <= high);
            i += range ? 2 : 0;
        }
        return found != excludes;
    }

    Outcome text(const TargetIOConversion& conversion)
    {
        const bool characters = conversion.letter == 'c';
        const int width = characters && conversion.width <= 0 ? 1 : conversion.width;
        std::string token = takeWhile(width, [&](const std::string&, int c) {
            return characters
                || (conversion.letter == 's' ? !isSpace(c) : inSet(conversion.set, c));
        });
        if (token.empty())
            return Outcome::Mismatch;
        if (conversion.suppress)
            return Outcome::Passed;
        const std::size_t length = token.size() + (characters ? 0 : 1);
        m_arguments.memory().pokeBytes(m_arguments.getPtrArg(), static_cast<unsigned>(length),
                                       reinterpret_cast<const unsigned char*>(token.c_str()));
        return Outcome::Stored;
    }

    Outcome store(const TargetIOConversion& conversion, std::uint64_t value)
    {
        if (conversion.suppress)
            return Outcome::Passed;
        const unsigned sizes[] = {1, 2, m_arguments.memory().wordLength(), 4, 8};
        m_arguments.memory().pokeNumber(m_arguments.getPtrArg(),
                                        sizes[static_cast<int>(conversion.length)], value);
        return Outcome::Stored;
    }

    TargetIOScanSource& m_source;
    TargetIOArguments& m_arguments;
};

} // namespace

int scanTargetFormat(const std::string& format, TargetIOScanSource& source,
                     TargetIOArguments& arguments)
{
    return Scanner(source, arguments).run(format);
}
