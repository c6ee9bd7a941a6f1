#include "script/es/ESLexer.h"

#include "script/es/ESString.h"

#include <array>
#include <cmath>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr const char* Keywords[] = {
    "break",  "case", "catch", "class",  "const",   "continue", "debugger", "default",  "delete",
    "do",     "else", "enum",  "export", "extends", "finally",  "for",      "function", "if",
    "import", "in",   "new",   "return", "super",   "switch",   "this",     "throw",    "try",
    "typeof", "var",  "void",  "while",  "with",    "true",     "false",    "null"};
static_assert(std::size(Keywords) == ESToken::LastKeyword - ESToken::FirstKeyword + 1);

struct Operator {
    const char* text;
    int token;
};
/// Longer ones stand in front of their beginnings.
constexpr Operator Operators[] = {
    {">>>=", ESToken::UshrAssign}, {"<<=", ESToken::ShlAssign},    {">>=", ESToken::ShrAssign},
    {"===", ESToken::Identical},   {"!==", ESToken::NotIdentical}, {">>>", ESToken::Ushr},
    {"&=", ESToken::AndAssign},    {"|=", ESToken::OrAssign},      {"^=", ESToken::XorAssign},
    {"+=", ESToken::AddAssign},    {"-=", ESToken::SubAssign},     {"*=", ESToken::MulAssign},
    {"/=", ESToken::DivAssign},    {"%=", ESToken::ModAssign},     {"||", ESToken::OrOr},
    {"&&", ESToken::AndAnd},       {"==", ESToken::Equal},         {"!=", ESToken::NotEqual},
    {"<=", ESToken::LessEqual},    {">=", ESToken::GreaterEqual},  {"<<", ESToken::Shl},
    {">>", ESToken::Shr},          {"++", ESToken::PlusPlus},      {"--", ESToken::MinusMinus}};

constexpr char SingleCharacters[] = "(){}[];,<>=!~?:.+-*/%&|^";

const QHash<QString, int>& keywords()
{
    static const QHash<QString, int> map = [] {
        QHash<QString, int> made;
        for (int i = 0; i < int(std::size(Keywords)); ++i)
            made.insert(QLatin1String(Keywords[i]), ESToken::FirstKeyword + i);
        return made;
    }();
    return map;
}

bool isBlank(QChar c) { return (c >= QChar(9) && c <= QChar(13)) || c == u' '; }

int digitValue(QChar c)
{
    if (c >= u'0' && c <= u'9')
        return c.unicode() - u'0';
    const QChar lower = c.toLower();
    return lower >= u'a' && lower <= u'z' ? lower.unicode() - u'a' + 10 : 36;
}

} // namespace

QString esTokenName(int token)
{
    if (token < ESToken::End)
        return u'\'' + QString(QChar(token)) + u'\'';
    if (token == ESToken::End)
        return u"end of file"_s;
    if (token == ESToken::Identifier)
        return u"identifier"_s;
    if (token == ESToken::Number)
        return u"number"_s;
    if (token == ESToken::String)
        return u"string"_s;
    for (const Operator& one : Operators)
        if (one.token == token)
            return u'\'' + QLatin1String(one.text) + u'\'';
    if (token >= ESToken::FirstKeyword && token <= ESToken::LastKeyword)
        return u'\'' + QLatin1String(Keywords[token - ESToken::FirstKeyword]) + u'\'';
    return u"expression"_s;
}

unsigned ESLexer::classOf(QChar c)
{
    static const auto table = [] {
        std::array<std::uint8_t, 256> classes = {};
        const auto mark = [&](const char* characters, unsigned bits) {
            for (; *characters; ++characters)
                classes[static_cast<unsigned char>(*characters)] |= std::uint8_t(bits);
        };
        mark("abcdefghijklmnopqrstuvwxyz", Lower);
        mark("ABCDEFGHIJKLMNOPQRSTUVWXYZ", Upper);
        mark("$_", IdentifierSign);
        mark("0123456789", Digit | HexDigit);
        mark("+-", NumberSign);
        mark("eE", ExponentLetter);
        mark("abcdefABCDEF", HexDigit);
        mark("01234567", OctalDigit);
        return classes;
    }();
    return c.unicode() < 256 ? table[c.unicode()] : 0;
}

void ESLexer::setSource(const QString& source)
{
    m_source = source;
    m_position = 0;
    m_line = 1;
    m_newlineBefore = false;
    m_pushedBack = -1;
}

void ESLexer::skipBlockComment()
{
    const int end = int(m_source.indexOf(u"*/"_s, m_position + 2));
    const int stop = end < 0 ? int(m_source.size()) : end + 2;
    for (; m_position < stop; ++m_position)
        if (m_source[m_position] == u'\n') {
            ++m_line;
            m_newlineBefore = true;
        }
}

void ESLexer::skipBlanks()
{
    for (;;) {
        const QChar c = at(m_position);
        if (m_position < m_source.size() && isBlank(c)) {
            if (c == u'\n')
                ++m_line;
            if (c == u'\n' || c == u'\r')
                m_newlineBefore = true;
            ++m_position;
        } else if (c == u'/' && at(m_position + 1) == u'/') {
            while (m_position < m_source.size() && at(m_position) != u'\n'
                   && at(m_position) != u'\r')
                ++m_position;
        } else if (c == u'/' && at(m_position + 1) == u'*') {
            skipBlockComment();
        } else {
            return;
        }
    }
}

int ESLexer::lex()
{
    if (m_pushedBack >= 0) {
        const int token = m_pushedBack;
        m_pushedBack = -1;
        return token;
    }
    m_newlineBefore = false;
    skipBlanks();
    if (m_position >= m_source.size())
        return ESToken::End;
    const QChar c = at(m_position);
    if (isA(c, IdentifierStart))
        return lexid();
    if (isA(c, Digit) || (c == u'.' && isA(at(m_position + 1), Digit)))
        return lexnumber();
    if (c == u'"' || c == u'\'')
        return lexstring(c);
    return lexoperator();
}

int ESLexer::lexid()
{
    const int start = m_position;
    while (m_position < m_source.size() && isA(at(m_position), IdentifierPart))
        ++m_position;
    const QString word = m_source.mid(start, m_position - start);
    m_string = ESStringPool::intern(word);
    return keywords().value(word, ESToken::Identifier);
}

int ESLexer::lexnumber()
{
    const ParsedNumber parsed = parsenum(m_source, m_position, Decimal | Hexadecimal | Octal);
    if (!parsed.problem.isEmpty())
        fail(parsed.problem);
    m_position = parsed.end;
    m_number = parsed.value;
    return ESToken::Number;
}

int ESLexer::lexoperator()
{
    const QStringView rest = QStringView(m_source).mid(m_position, 4);
    for (const Operator& one : Operators)
        if (rest.startsWith(QLatin1String(one.text))) {
            m_position += int(qstrlen(one.text));
            return one.token;
        }
    const QChar c = at(m_position);
    if (c.unicode() == 0 || c.unicode() > 127 || !strchr(SingleCharacters, c.toLatin1()))
        fail(u"unknown character '%1'"_s.arg(c));
    ++m_position;
    return c.unicode();
}

// Strings

int ESLexer::lexstring(QChar quote)
{
    ++m_position;
    QString text;
    for (;;) {
        if (m_position >= m_source.size())
            fail(u"end of file in string constant"_s);
        const QChar c = m_source[m_position++];
        if (c == quote)
            break;
        if (c == u'\n' || c == u'\r')
            fail(u"newline in string constant"_s);
        text += c == u'\\' ? escchar() : c;
    }
    m_string = ESStringPool::intern(text);
    return ESToken::String;
}

QChar ESLexer::escchar()
{
    if (m_position >= m_source.size())
        fail(u"end of file in string constant"_s);
    const QChar c = m_source[m_position++];
    switch (c.unicode()) {
    case 'b': return QChar(8);
    case 'f': return QChar(12);
    case 'n': return QChar(10);
    case 't': return QChar(9);
    case 'r': return QChar(13);
    case 'x': return hexEscape(2);
    case 'u': return hexEscape(4);
    default: break;
    }
    if (isA(c, OctalDigit)) {
        --m_position;
        return octalEscape();
    }
    return c;
}

QChar ESLexer::hexEscape(int digits)
{
    unsigned value = 0;
    for (; digits > 0; --digits, ++m_position) {
        if (!isA(at(m_position), HexDigit))
            fail(u"malformed hex escape sequence"_s);
        value = value * 16 + unsigned(digitValue(at(m_position)));
    }
    return QChar(value);
}

QChar ESLexer::octalEscape()
{
    // A third digit would go beyond a byte unless the first two are below 040.
    constexpr unsigned LastForThirdDigit = 0x20;
    unsigned value = 0;
    for (int digits = 0; digits < 3 && isA(at(m_position), OctalDigit); ++digits, ++m_position) {
        if (digits == 2 && value >= LastForThirdDigit)
            break;
        value = value * 8 + unsigned(digitValue(at(m_position)));
    }
    return QChar(value);
}

// Numbers

double ESLexer::strtoi(const QString& digits, int radix, QString& problem)
{
    double value = 0;
    for (const QChar c : digits) {
        const int digit = digitValue(c);
        if (digit >= radix) {
            problem = u"digit '%1' is not radix %2"_s.arg(c).arg(radix);
            return std::numeric_limits<double>::quiet_NaN();
        }
        value = value * radix + digit;
    }
    return digits.isEmpty() ? std::numeric_limits<double>::quiet_NaN() : value;
}

namespace {

/// A run of characters that a predicate holds for.
template <typename Predicate> int runEnd(const QString& text, int from, Predicate holds)
{
    while (from < text.size() && holds(text[from]))
        ++from;
    return from;
}

bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

/// The end of a decimal number, `start` if there is none: an exponent without digits isn't part of
/// it.
int decimalEnd(const QString& text, int start)
{
    int end = runEnd(text, start, isDigit);
    const bool hasInteger = end > start;
    if (end < text.size() && text[end] == u'.') {
        const int fraction = runEnd(text, end + 1, isDigit);
        if (!hasInteger && fraction == end + 1)
            return start;
        end = fraction;
    }
    if (end == start || end >= text.size() || text[end].toLower() != u'e')
        return end;
    int digits = end + 1;
    if (digits < text.size() && (text[digits] == u'+' || text[digits] == u'-'))
        ++digits;
    const int exponent = runEnd(text, digits, isDigit);
    return exponent > digits ? exponent : end;
}

} // namespace

ESLexer::ParsedNumber ESLexer::parsenum(const QString& text, int start, unsigned flags)
{
    constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
    int at = start;
    if (flags & Blanks)
        at = runEnd(text, at, isBlank);
    if (at >= text.size())
        return {flags & EmptyIsZero ? 0.0 : NaN, at, {}};
    double sign = 1;
    if (text[at] == u'+' || text[at] == u'-')
        sign = text[at++] == u'-' ? -1 : 1;
    const auto finish = [&](double value, int end, const QString& problem = {}) {
        if (flags & Blanks)
            end = runEnd(text, end, isBlank);
        return ParsedNumber{sign * value, end, problem};
    };

    if ((flags & Decimal) && QStringView(text).mid(at).startsWith(u"Infinity"_s))
        return finish(std::numeric_limits<double>::infinity(), at + 8);
    const QChar second = at + 1 < text.size() ? text[at + 1] : QChar();
    QString problem;
    if ((flags & Hexadecimal) && text[at] == u'0' && second.toLower() == u'x') {
        const int end = runEnd(text, at + 2, [](QChar c) { return digitValue(c) < 16; });
        const double value = strtoi(text.mid(at + 2, end - at - 2), 16, problem);
        return finish(value, end, problem);
    }
    if ((flags & Octal) && text[at] == u'0' && isDigit(second)) {
        const int end = runEnd(text, at + 1, isDigit);
        const double value = strtoi(text.mid(at + 1, end - at - 1), 8, problem);
        return finish(value, end, problem);
    }
    const int end = flags & Decimal ? decimalEnd(text, at) : runEnd(text, at, isDigit);
    if (end == at)
        return finish(NaN, at);
    return finish(QStringView(text).mid(at, end - at).toDouble(), end);
}
