#include "toolchain/kas/AsmTokens.h"

#include "toolchain/kas/AsmLine.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool startsName(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '.' || c == '$'
        || c == '?';
}

bool continuesName(char c) { return startsName(c) || isDigit(c); }

constexpr std::string_view DoubleOperators[] = {"<<", ">>", "<=", ">=", "==", "!=", "&&", "||"};
constexpr std::string_view SingleOperators = "+-*/%<>&|^~!()#@,:=";

/// Takes the first token off a text.
class Scanner {
public:
    explicit Scanner(std::string_view& text) : m_rest(text) { }

    AsmToken scan()
    {
        while (!m_rest.empty() && std::isspace(static_cast<unsigned char>(m_rest[0])))
            m_rest.remove_prefix(1);
        if (m_rest.empty())
            return take(AsmToken::End, 0);
        const char c = m_rest[0];
        if (startsName(c))
            return name();
        if (isDigit(c))
            return number();
        if (c == '"')
            return text();
        if (c == '\'')
            return character();
        for (const std::string_view op : DoubleOperators)
            if (m_rest.starts_with(op))
                return take(AsmToken::Operator, 2);
        if (SingleOperators.find(c) != std::string_view::npos)
            return take(AsmToken::Operator, 1);
        throw AsmError{std::string("unexpected character '") + c + "'"};
    }

private:
    AsmToken take(AsmToken::Kind kind, std::size_t length)
    {
        AsmToken token;
        token.kind = kind;
        token.text = m_rest.substr(0, length);
        m_rest.remove_prefix(length);
        return token;
    }

    AsmToken name()
    {
        const auto end = std::find_if_not(m_rest.begin(), m_rest.end(), continuesName);
        return take(AsmToken::Name, static_cast<std::size_t>(end - m_rest.begin()));
    }

    AsmToken number()
    {
        const auto end = std::find_if_not(m_rest.begin(), m_rest.end(), continuesName);
        const std::string_view word =
            m_rest.substr(0, static_cast<std::size_t>(end - m_rest.begin()));
        AsmToken token = take(AsmToken::Number, word.size());
        std::string_view digits = word;
        int base = 10;
        if (word.size() > 1 && (word[1] == 'x' || word[1] == 'X'))
            base = 16;
        else if (word.size() > 2 && (word[1] == 'b' || word[1] == 'B') && word[0] == '0')
            base = 2;
        else if (isLabelRef(word))
            return labelRef(token);
        else if (word[0] == '0' && word.size() > 1)
            base = 8;
        if (base == 16 || base == 2)
            digits.remove_prefix(2);
        token.value = parse(digits, base, word);
        return token;
    }

    static bool isLabelRef(std::string_view word)
    {
        const char last = word.back();
        return (last == 'f' || last == 'F' || last == 'b' || last == 'B')
            && std::all_of(word.begin(), word.end() - 1, isDigit);
    }

    static AsmToken labelRef(AsmToken token)
    {
        token.kind = AsmToken::LabelRef;
        token.forward = token.text.back() == 'f' || token.text.back() == 'F';
        token.value = parse(token.text.substr(0, token.text.size() - 1), 10, token.text);
        return token;
    }

    static std::int64_t parse(std::string_view digits, int base, std::string_view word)
    {
        std::uint64_t value = 0;
        const char* end = digits.data() + digits.size();
        const auto [stopped, error] = std::from_chars(digits.data(), end, value, base);
        if (error == std::errc::result_out_of_range)
            throw AsmError{"number '" + std::string(word) + "' has more than 64 bits"};
        if (error != std::errc() || stopped != end)
            throw AsmError{"malformed number '" + std::string(word) + "'"};
        return static_cast<std::int64_t>(value);
    }

    /// Reads one character behind `i`, escaped or not, and moves `i` behind it.
    char unescaped(std::size_t& i) const
    {
        const char c = m_rest[i++];
        if (c != '\\' || i == m_rest.size())
            return c;
        const char escape = m_rest[i++];
        static constexpr std::string_view Letters = "abfnrtv";
        static constexpr std::string_view Meanings = "\a\b\f\n\r\t\v";
        if (const std::size_t at = Letters.find(escape); at != std::string_view::npos)
            return Meanings[at];
        if (escape == 'x')
            return numericEscape(i, 16, 2, 0);
        if (escape >= '0' && escape <= '7')
            return numericEscape(i, 8, 2, escape - '0');
        return escape;
    }

    char numericEscape(std::size_t& i, int base, int digits, int value) const
    {
        for (; digits > 0 && i < m_rest.size(); --digits, ++i) {
            const char c = m_rest[i];
            if (!std::isxdigit(static_cast<unsigned char>(c))
                || (base == 8 && (c < '0' || c > '7')))
                break;
            value = value * base + (isDigit(c) ? c - '0' : (c | 0x20) - 'a' + 10);
        }
        return static_cast<char>(value);
    }

    AsmToken text()
    {
        std::string bytes;
        std::size_t i = 1;
        while (i < m_rest.size() && m_rest[i] != '"')
            bytes += unescaped(i);
        if (i >= m_rest.size())
            throw AsmError{"string without its closing quote"};
        AsmToken token = take(AsmToken::Text, i + 1);
        token.string = std::move(bytes);
        return token;
    }

    AsmToken character()
    {
        std::size_t i = 1;
        if (m_rest.size() < 3)
            throw AsmError{"malformed character constant"};
        const char value = unescaped(i);
        if (i >= m_rest.size() || m_rest[i] != '\'')
            throw AsmError{"malformed character constant"};
        AsmToken token = take(AsmToken::Number, i + 1);
        token.value = static_cast<unsigned char>(value);
        return token;
    }

    std::string_view& m_rest;
};

} // namespace

const AsmToken& AsmTokens::peek(std::size_t ahead)
{
    while (m_count <= ahead)
        m_ahead[m_count++] = Scanner(m_unread).scan();
    return m_ahead[ahead];
}

AsmToken AsmTokens::next()
{
    peek();
    AsmToken token = std::move(m_ahead[0]);
    if (--m_count > 0)
        m_ahead[0] = std::move(m_ahead[1]);
    return token;
}

bool AsmTokens::sees(std::string_view op, std::size_t ahead)
{
    return peek(ahead).kind == AsmToken::Operator && peek(ahead).text == op;
}

bool AsmTokens::accept(std::string_view op)
{
    if (!sees(op))
        return false;
    next();
    return true;
}

void AsmTokens::expect(std::string_view op)
{
    if (accept(op))
        return;
    const std::string place =
        atEnd() ? " at the end" : " before '" + std::string(peek().text) + "'";
    throw AsmError{"missing '" + std::string(op) + "'" + place};
}

void AsmTokens::expectEnd()
{
    if (!atEnd())
        throw AsmError{"unexpected '" + std::string(peek().text) + "'"};
}

std::string AsmTokens::expectName(const char* what)
{
    if (peek().kind != AsmToken::Name)
        throw AsmError{std::string("missing ") + what};
    return std::string(next().text);
}

std::string AsmTokens::expectString()
{
    if (peek().kind != AsmToken::Text)
        throw AsmError{"missing string"};
    return next().string;
}

std::string_view AsmTokens::rest()
{
    return m_statement.substr(static_cast<std::size_t>(peek().text.data() - m_statement.data()));
}

void AsmTokens::skipRest()
{
    m_unread = {};
    m_count = 0;
}
