#include "debugger/expressions/Lexer.h"

#include "debugger/expressions/ParserException.h"

void Lexer::reset(const char* text)
{
    m_input = text;
    m_position = 0;
    m_precedence = NoOperator;
    gettok();
}

void Lexer::gettok()
{
    do
        nexttok();
    while (m_token == WhiteSpace);
}

void Lexer::nexttok()
{
    const std::string_view rest = std::string_view(m_input).substr(m_position);
    if (rest.empty()) {
        m_token = EndOfText;
        m_text.clear();
        return;
    }
    const Match found = match(rest);
    if (found.length == 0)
        throw ParserException(
            QStringLiteral("unrecognised token: ")
            + QString::fromUtf8(rest.data(), static_cast<qsizetype>(rest.size())));
    m_token = found.token;
    m_precedence = found.precedence;
    m_text = rest.substr(0, found.length);
    m_position += found.length;
}
