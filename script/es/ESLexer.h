#pragma once

#include "script/es/ESToken.h"

#include <QHash>
#include <QString>

struct ESString;

/// A text that is no program: one message, and the line.
struct ESSyntaxError {
    QString message;
    int line;
};

/// Turns a source text into tokens. Throws ESSyntaxError.
class ESLexer {
public:
    void setSource(const QString& source);

    int lex();
    void pushBack(int token) { m_pushedBack = token; }
    /// Whether a line ended between the last token and the one before it.
    bool newlineBefore() const { return m_newlineBefore; }
    int line() const { return m_line; }

    /// Of the last number token.
    double number() const { return m_number; }
    /// The text of the last string, identifier or keyword token.
    ESString* string() const { return m_string; }

    /// What parsenum accepts.
    enum NumberFlag : unsigned {
        Decimal = 1, ///< point, exponent, and the word Infinity
        Hexadecimal = 2,
        Octal = 4,  ///< by a leading zero
        Blanks = 8, ///< white space around it
        EmptyIsZero = 0x10
    };
    struct ParsedNumber {
        double value;
        int end;         ///< the position behind it
        QString problem; ///< empty unless the text is no number of its kind
    };
    static ParsedNumber parsenum(const QString& text, int start, unsigned flags);
    /// The digits as a number of that radix; the problem is told for one that isn't a digit of it.
    static double strtoi(const QString& digits, int radix, QString& problem);

private:
    enum CharacterClass : std::uint8_t {
        Lower = 1,
        Upper = 2,
        IdentifierSign = 4,
        Digit = 8,
        NumberSign = 0x10,
        ExponentLetter = 0x20,
        HexDigit = 0x40,
        OctalDigit = 0x80,
        IdentifierStart = Lower | Upper | IdentifierSign,
        IdentifierPart = IdentifierStart | Digit
    };
    static unsigned classOf(QChar c);
    static bool isA(QChar c, unsigned classes) { return (classOf(c) & classes) != 0; }

    QChar at(int position) const
    {
        return position < m_source.size() ? m_source[position] : QChar();
    }
    [[noreturn]] void fail(const QString& message) const { throw ESSyntaxError{message, m_line}; }
    void skipBlanks();
    void skipBlockComment();
    int lexid();
    int lexnumber();
    int lexstring(QChar quote);
    QChar escchar();
    QChar hexEscape(int digits);
    QChar octalEscape();
    int lexoperator();

    QString m_source;
    int m_position = 0;
    int m_line = 1;
    bool m_newlineBefore = false;
    int m_pushedBack = -1;
    double m_number = 0;
    ESString* m_string = nullptr;
};
