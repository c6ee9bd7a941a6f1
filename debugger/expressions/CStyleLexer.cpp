#include "debugger/expressions/CStyleLexer.h"

#include <array>

namespace {

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool isHexDigit(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
constexpr bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
constexpr bool isWord(char c) { return isDigit(c) || isLetter(c) || c == '_'; }
constexpr bool isName(char c) { return isWord(c) || c == '$'; }
constexpr bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

template <typename Accept> std::size_t span(std::string_view text, std::size_t from, Accept accept)
{
    while (from < text.size() && accept(text[from]))
        ++from;
    return from;
}

struct Punctuation {
    std::string_view text;
    int token;
    int precedence;
};

/// In the order in which they are tried: a longer one ahead of its beginning.
constexpr Punctuation punctuation[] = {
    {";", CStyleLexer::Semicolon, 10},
    {"::", CStyleLexer::Scope, 10},
    {":", CStyleLexer::Colon, 10},
    {"(", CStyleLexer::OpenParenthesis, 10},
    {")", CStyleLexer::CloseParenthesis, 10},
    {"[", CStyleLexer::OpenBracket, 10},
    {"]", CStyleLexer::CloseBracket, 10},
    {"{", CStyleLexer::OpenBrace, 10},
    {"}", CStyleLexer::CloseBrace, 10},
    {".", CStyleLexer::Dot, 10},
    {"->", CStyleLexer::Arrow, 10},
    {"++", CStyleLexer::Increment, 10},
    {"--", CStyleLexer::Decrement, 10},
    {"!=", CStyleLexer::NotEqual, 5},
    {"!", CStyleLexer::Exclamation, 10},
    {"~", CStyleLexer::Tilde, 10},
    {"*=", CStyleLexer::StarAssign, -3},
    {"*", CStyleLexer::Star, 9},
    {"/=", CStyleLexer::SlashAssign, -3},
    {"/", CStyleLexer::Slash, 9},
    {"%=", CStyleLexer::PercentAssign, -3},
    {"%", CStyleLexer::Percent, 9},
    {"+=", CStyleLexer::PlusAssign, -3},
    {"+", CStyleLexer::Plus, 8},
    {"-=", CStyleLexer::MinusAssign, -3},
    {"-", CStyleLexer::Minus, 8},
    {"<<=", CStyleLexer::ShiftLeftAssign, -3},
    {"<<", CStyleLexer::ShiftLeft, 7},
    {">>>=", CStyleLexer::ShiftRightUnsignedAssign, -3},
    {">>>", CStyleLexer::ShiftRightUnsigned, 7},
    {">>=", CStyleLexer::ShiftRightAssign, -3},
    {">>", CStyleLexer::ShiftRight, 7},
    {"<=", CStyleLexer::LessEqual, 6},
    {"<", CStyleLexer::Less, 6},
    {">=", CStyleLexer::GreaterEqual, 6},
    {">", CStyleLexer::Greater, 6},
    {"==", CStyleLexer::Equal, 5},
    {"^=", CStyleLexer::CaretAssign, -3},
    {"^", CStyleLexer::Caret, 3},
    {"&=", CStyleLexer::AmpersandAssign, -3},
    {"&&", CStyleLexer::LogicalAnd, 1},
    {"&", CStyleLexer::Ampersand, 4},
    {"|=", CStyleLexer::BarAssign, -3},
    {"||", CStyleLexer::LogicalOr, 0},
    {"|", CStyleLexer::Bar, 2},
    {"?", CStyleLexer::Question, -1},
    {"=", CStyleLexer::Assign, -2},
    {",", CStyleLexer::Comma, -4},
};

struct Number {
    std::size_t length;
    int token;
};

Number matchNumber(std::string_view rest)
{
    if (rest.starts_with("0x"))
        return {span(rest, 2, isHexDigit), CStyleLexer::Hexadecimal};
    const std::size_t whole = span(rest, 0, isDigit);
    if (whole + 1 < rest.size() && rest[whole] == '.' && isDigit(rest[whole + 1]))
        return {span(rest, whole + 1, isDigit), CStyleLexer::Floating};
    return {whole, CStyleLexer::Decimal};
}

} // namespace

Lexer::Match CStyleLexer::match(std::string_view rest) const
{
    const char first = rest[0];
    if (isBlank(first))
        return {span(rest, 1, isBlank), WhiteSpace, NoOperator};
    if (first == '"') {
        const std::size_t end = rest.find('"', 1);
        return {end != rest.npos ? end + 1 : 0, String, NoOperator};
    }
    if (isDigit(first)) {
        const Number number = matchNumber(rest);
        return {number.length, number.token, NoOperator};
    }
    if (isName(first))
        return {span(rest, 1, isName), Identifier, NoOperator};
    if (first == '@')
        return {span(rest, 1, isWord), Register, NoOperator};
    for (const Punctuation& it : punctuation)
        if (rest.starts_with(it.text))
            return {it.text.size(), it.token, it.precedence};
    return {0, EndOfText, NoOperator};
}
