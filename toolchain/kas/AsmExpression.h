#pragma once

#include "toolchain/kas/AsmTokens.h"

#include <optional>

struct SourceLocation;
class AsmSections;
class AsmSymbols;
class TOBFExpr;

/// The value of an expression that is known while assembling: one that holds no address.
std::optional<std::int64_t> knownValue(const TOBFExpr* expr);

/// The number of a register, or nothing if the name is another.
std::optional<int> registerNumber(std::string_view name);

/// Reads expressions: the operators of C with their ranks, symbols, `1f` and `1b`, numbers and
/// characters, "." or "$" for the current place, `lo(x)` and `hi(x)` for the halves of a value.
class AsmExpressions {
public:
    AsmExpressions(AsmSymbols& symbols, AsmSections& sections)
        : m_symbols(symbols),
          m_sections(sections)
    {
    }

    /// Throws AsmError.
    TOBFExpr* parse(AsmTokens& tokens, const SourceLocation& where);
    /// The same for a value that has to be known now; `what` names it in the message.
    std::int64_t parseKnown(AsmTokens& tokens, const SourceLocation& where, const char* what);
    /// A value that "||" may stand behind.
    TOBFExpr* parseWithoutLogical(AsmTokens& tokens, const SourceLocation& where);

    /// The current place.
    TOBFExpr* here();

private:
    TOBFExpr* binary(int lowestRank);
    TOBFExpr* unary();
    TOBFExpr* primary();
    TOBFExpr* half(const std::string& function);
    TOBFExpr* checked(TOBFExpr* expr) const;

    AsmSymbols& m_symbols;
    AsmSections& m_sections;
    AsmTokens* m_tokens = nullptr;
    const SourceLocation* m_where = nullptr;
    int m_depth = 0;
};
