#include "debugger/views/AutosParser.h"

#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Of brackets within one another; deeper ones are passed over.
constexpr int DeepestLevel = 100;

bool isWord(QChar c)
{
    return c == u'_' || c == u'$' || (c.unicode() < 0x80 && c.isLetterOrNumber());
}

bool isOperator(QChar c) { return !c.isNull() && QStringView(u"+-*/%&|^!~<>=?:").contains(c); }

/// Whether a run of operators assigns.
bool assigns(QString run)
{
    for (const QStringView comparison : {u"==", u"!=", u"<=", u">="})
        run.remove(comparison.toString());
    return run.contains(u'=') || run.contains(u"++"_s) || run.contains(u"--"_s);
}

} // namespace

AutosParser::AutosParser(const QString& line, IsKeyword isKeyword)
    : m_line(line),
      m_isKeyword(std::move(isKeyword))
{
}

// Symbols

QChar AutosParser::nextch()
{
    ++m_at;
    return curch();
}

template <typename Accept> void AutosParser::readWhile(Accept accept)
{
    while (m_at < m_line.size() && accept(curch()))
        nextch();
}

void AutosParser::skipBlanksAndComments()
{
    for (;;) {
        readWhile([](QChar c) { return c.isSpace(); });
        const QStringView rest = QStringView(m_line).sliced(std::min(m_at, m_line.size()));
        if (rest.startsWith(u"//")) {
            m_at = m_line.size();
        } else if (rest.startsWith(u"/*")) {
            const qsizetype end = m_line.indexOf(u"*/"_s, m_at + 2);
            m_at = end < 0 ? m_line.size() : end + 2;
        } else {
            return;
        }
    }
}

void AutosParser::skipLiteral()
{
    const QChar quote = curch();
    for (QChar c = nextch(); m_at < m_line.size() && c != quote; c = nextch())
        if (c == u'\\')
            nextch();
    nextch();
}

AutosParser::Symbol AutosParser::nextsym()
{
    skipBlanksAndComments();
    m_at = std::min(m_at, m_line.size());
    m_symbolStart = m_at;
    const QChar c = curch();
    if (m_at >= m_line.size()) {
        m_symbol = End;
    } else if (c.isDigit()) {
        m_symbol = Number;
        readWhile([](QChar it) { return isWord(it) || it == u'.'; });
    } else if (isWord(c)) {
        m_symbol = Identifier;
        readWhile(isWord);
    } else if (c == u'"' || c == u'\'') {
        m_symbol = Literal;
        skipLiteral();
    } else if (QStringView(m_line).sliced(m_at).startsWith(u"->")) {
        m_symbol = Member;
        m_at += 2;
    } else if (isOperator(c)) {
        m_symbol = Operator;
        readWhile(isOperator);
    } else {
        m_symbol = c == u'.' ? Member
            : c == u'['      ? LeftSquare
            : c == u']'      ? RightSquare
            : c == u'('      ? LeftParenthesis
            : c == u')'      ? RightParenthesis
                             : Operator;
        nextch();
    }
    m_at = std::min(m_at, m_line.size());
    m_text = m_line.sliced(m_symbolStart, m_at - m_symbolStart);
    return m_symbol;
}

// Variables

QStringList AutosParser::parse()
{
    nextsym();
    while (cursym() != End) {
        parseUntil(End);
        if (cursym() != End)
            nextsym();
    }
    return m_found;
}

/// Stops ahead of any closing bracket.
void AutosParser::parseUntil(Symbol end)
{
    while (cursym() != end && cursym() != End && cursym() != RightSquare
           && cursym() != RightParenthesis) {
        switch (cursym()) {
        case Identifier: parseVariable(); break;
        case Member: // of something else than a variable
            if (nextsym() == Identifier)
                nextsym();
            break;
        case LeftSquare: parseGroup(RightSquare); break;
        case LeftParenthesis: parseGroup(RightParenthesis); break;
        case Operator: m_effects += assigns(m_text); [[fallthrough]];
        default: nextsym();
        }
    }
}

/// What stands in brackets; whether its evaluation changes nothing.
bool AutosParser::parseGroup(Symbol end)
{
    const int effects = m_effects;
    nextsym();
    if (++m_depth <= DeepestLevel)
        parseUntil(end);
    --m_depth;
    const bool isClosed = cursym() == end;
    if (isClosed)
        nextsym();
    return isClosed && m_effects == effects;
}

void AutosParser::parseVariable()
{
    QString variable = m_isKeyword(m_text) ? QString() : m_text;
    nextsym();
    for (;;) {
        if (cursym() == Member) {
            parseMember(variable);
        } else if (cursym() == LeftSquare) {
            const qsizetype from = m_symbolStart;
            const bool isPure = parseGroup(RightSquare);
            const qsizetype to =
                m_line.lastIndexOf(u']', std::max<qsizetype>(m_symbolStart - 1, 0));
            if (!isPure || variable.isEmpty())
                variable.clear();
            else
                variable += m_line.sliced(from, to - from + 1);
        } else if (cursym() == LeftParenthesis) {
            if (!variable.isEmpty())
                ++m_effects;
            parseGroup(RightParenthesis);
            variable.clear();
        } else {
            break;
        }
    }
    if (!variable.isEmpty())
        watch(variable);
}

/// A pointer that is followed is worth watching too.
void AutosParser::parseMember(QString& variable)
{
    const QString memberOperator = m_text;
    if (memberOperator == u"->" && !variable.isEmpty())
        watch(variable);
    if (nextsym() != Identifier) {
        variable.clear();
        return;
    }
    if (!variable.isEmpty())
        variable += memberOperator + m_text;
    nextsym();
}

void AutosParser::watch(const QString& text)
{
    static const QRegularExpression words(u"\\b(\\w+)\\b"_s);
    for (auto word = words.globalMatch(text); word.hasNext();)
        if (m_isKeyword(word.next().captured(1)))
            return;
    if (!m_found.contains(text))
        m_found.append(text);
}
