#pragma once

#include <QStringList>

#include <functional>

/// Picks out of a line of C what is worth watching: variables, with their members and elements.
/// Functions that are called aren't, nor is anything whose evaluation would change something, such
/// as an element with a changing index.
class AutosParser {
public:
    /// Keywords, and other words that can't be variables.
    using IsKeyword = std::function<bool(const QString& word)>;

    AutosParser(const QString& line, IsKeyword isKeyword);

    /// In the order of the line, each once.
    QStringList parse();

private:
    enum Symbol {
        Identifier,
        Number,
        Member, ///< "." and "->"
        LeftSquare,
        RightSquare,
        LeftParenthesis,
        RightParenthesis,
        Operator,
        Literal,
        End,
    };

    QChar curch() const { return m_at < m_line.size() ? m_line[m_at] : QChar(); }
    QChar nextch();
    Symbol cursym() const { return m_symbol; }
    Symbol nextsym();
    void skipBlanksAndComments();
    void skipLiteral();
    template <typename Accept> void readWhile(Accept accept);

    void parseUntil(Symbol end);
    void parseVariable();
    void parseMember(QString& variable);
    bool parseGroup(Symbol end);
    void watch(const QString& text);

    QString m_line;
    IsKeyword m_isKeyword;
    qsizetype m_at = 0;
    Symbol m_symbol = End;
    qsizetype m_symbolStart = 0;
    QString m_text;    ///< of the symbol
    int m_effects = 0; ///< changes and calls seen so far
    int m_depth = 0;
    QStringList m_found;
};
