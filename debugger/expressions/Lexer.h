#pragma once

#include <string>
#include <string_view>

/// Splits a text into tokens. A class of its own for each language tells how a token begins; the
/// text is that of its bytes, and characters beyond ASCII belong to no token but strings.
class Lexer {
public:
    static constexpr int EndOfText = 0;
    static constexpr int WhiteSpace = 2;
    static constexpr int NoOperator = 10;

    virtual ~Lexer() = default;

    /// Starts at the beginning of a text and reads the first token.
    void reset(const char* text);
    /// Goes to the next token that isn't white space. At the end that is EndOfText, with the
    /// precedence left as it was. Throws ParserException "unrecognised token: " and the rest.
    void gettok();

    int token() const { return m_token; }
    int precedence() const { return m_precedence; }
    const std::string& text() const { return m_text; }
    /// Bytes from the beginning of the text up to the end of the current token.
    int position() const { return static_cast<int>(m_position); }

protected:
    struct Match {
        std::size_t length; ///< 0 if no token begins here
        int token;
        int precedence;
    };
    /// The token at the beginning of a text that isn't empty.
    virtual Match match(std::string_view rest) const = 0;

private:
    void nexttok();

    std::string m_input;
    std::size_t m_position = 0;
    int m_token = EndOfText;
    int m_precedence = NoOperator;
    std::string m_text;
};
