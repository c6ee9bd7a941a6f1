#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct AsmToken {
    enum Kind {
        End,
        Name,      ///< a symbol, mnemonic, register or directive; also "." and "$" alone
        Number,    ///< `value`; character constants too
        Text,      ///< a string; `string` holds its bytes
        LabelRef,  ///< `1f` or `1b`: `value` and `forward`
        Operator,  ///< one of the operators and punctuation marks
    };
    Kind kind = End;
    std::string_view text; ///< as written
    std::int64_t value = 0;
    bool forward = false;
    std::string string;
};

/// The tokens of one statement, and a position among them.
class AsmTokens {
public:
    /// The statement must outlive the tokens. Throws AsmError.
    explicit AsmTokens(std::string_view statement);

    const AsmToken& peek(std::size_t ahead = 0) const;
    const AsmToken& next();
    bool atEnd() const { return peek().kind == AsmToken::End; }

    bool sees(std::string_view op, std::size_t ahead = 0) const;
    /// Takes the operator if it is next.
    bool accept(std::string_view op);
    /// Takes the operator or throws.
    void expect(std::string_view op);
    /// Throws unless nothing is left.
    void expectEnd() const;
    /// Takes a name or throws; `what` says what it should be.
    std::string expectName(const char* what);
    std::string expectString();

    /// The statement's text from the next token on.
    std::string_view rest() const;
    void skipRest() { m_position = m_tokens.size() - 1; }

private:
    std::string_view m_statement;
    std::vector<AsmToken> m_tokens;
    std::size_t m_position = 0;
};
