#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

struct AsmToken {
    enum Kind {
        End,
        Name,     ///< a symbol, mnemonic, register or directive; also "." and "$" alone
        Number,   ///< `value`; character constants too
        Text,     ///< a string; `string` holds its bytes
        LabelRef, ///< `1f` or `1b`: `value` and `forward`
        Operator, ///< one of the operators and punctuation marks
    };
    Kind kind = End;
    std::string_view text; ///< as written
    std::int64_t value = 0;
    bool forward = false;
    std::string string;
};

/// The tokens of one statement, read as they are needed.
class AsmTokens {
public:
    /// The statement must outlive the tokens. Whatever looks at a token throws AsmError if it is
    /// malformed.
    explicit AsmTokens(std::string_view statement) : m_statement(statement), m_unread(statement) { }

    /// The next token, or the one behind it; valid until one is taken.
    const AsmToken& peek(std::size_t ahead = 0);
    AsmToken next();
    bool atEnd() { return peek().kind == AsmToken::End; }

    bool sees(std::string_view op, std::size_t ahead = 0);
    /// Takes the operator if it is next.
    bool accept(std::string_view op);
    /// Takes the operator or throws.
    void expect(std::string_view op);
    /// Throws unless nothing is left.
    void expectEnd();
    /// Takes a name or throws; `what` says what it should be.
    std::string expectName(const char* what);
    std::string expectString();

    /// The statement's text from the next token on.
    std::string_view rest();
    void skipRest();

private:
    static constexpr std::size_t MostAhead = 2;

    std::string_view m_statement;
    std::string_view m_unread;
    std::array<AsmToken, MostAhead> m_ahead;
    std::size_t m_count = 0; ///< of the tokens ahead
};
