#include "toolchain/kas/AsmExpression.h"

#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "toolchain/kas/AsmSections.h"
#include "toolchain/kas/AsmSymbols.h"

#include <cctype>

namespace {

/// How deep brackets and prefixes may stand in one another, and how many operations may be joined:
/// what comes behind walks expressions recursively.
constexpr int MaximumNesting = 200;
constexpr std::uint32_t MaximumOperations = 500;

struct BinaryOperator {
    const char* text;
    int rank; ///< the higher binds first
    TOBFTag tag;
};

constexpr int LowestRank = 1;
constexpr int RankAboveLogical = 3;

constexpr BinaryOperator Operators[] = {
    {"||", 1, TAG_LOGICAL_OR}, {"&&", 2, TAG_LOGICAL_AND}, {"|", 3, TAG_OR},  {"^", 4, TAG_XOR},
    {"&", 5, TAG_AND},         {"==", 6, TAG_EQ},          {"!=", 6, TAG_NE}, {"<", 7, TAG_LT},
    {">", 7, TAG_GT},          {"<=", 7, TAG_LE},          {">=", 7, TAG_GE}, {"<<", 8, TAG_SHL},
    {">>", 8, TAG_SHR},        {"+", 9, TAG_ADD},          {"-", 9, TAG_SUB}, {"*", 10, TAG_MUL},
    {"/", 10, TAG_DIV},        {"%", 10, TAG_MOD},
};

const BinaryOperator* findOperator(const AsmToken& token)
{
    if (token.kind == AsmToken::Operator)
        for (const BinaryOperator& op : Operators)
            if (token.text == op.text)
                return &op;
    return nullptr;
}

TOBFExpr* constant(std::int64_t value) { return new TOBFConstExpr(value); }

} // namespace

std::optional<std::int64_t> knownValue(const TOBFExpr* expr)
{
    const TOBFValue value = expr->evaluate();
    if (value.failed || value.section != nullptr)
        return {};
    return value.value;
}

std::optional<int> registerNumber(std::string_view name)
{
    const auto at = [&](std::size_t i) {
        return static_cast<char>(std::tolower(static_cast<unsigned char>(name[i])));
    };
    if (name.size() < 2 || name.size() > 3)
        return {};
    if (name.size() == 2) {
        const std::string lower{at(0), at(1)};
        for (int i = 0; i < 3; ++i)
            if (lower == std::string_view("pcspsr").substr(static_cast<std::size_t>(i) * 2, 2))
                return i;
    }
    if (at(0) != 'r')
        return {};
    int number = 0;
    for (const char c : name.substr(1)) {
        if (c < '0' || c > '9')
            return {};
        number = number * 10 + (c - '0');
    }
    const bool leadingZero = name.size() == 3 && name[1] == '0';
    return number <= 15 && !leadingZero ? std::optional(number) : std::nullopt;
}

TOBFExpr* AsmExpressions::parse(AsmTokens& tokens, const SourceLocation& where)
{
    m_tokens = &tokens;
    m_where = &where;
    m_depth = 0;
    return binary(LowestRank);
}

TOBFExpr* AsmExpressions::parseWithoutLogical(AsmTokens& tokens, const SourceLocation& where)
{
    m_tokens = &tokens;
    m_where = &where;
    m_depth = 0;
    return binary(RankAboveLogical);
}

std::int64_t AsmExpressions::parseKnown(AsmTokens& tokens, const SourceLocation& where,
                                        const char* what)
{
    const std::optional<std::int64_t> value = knownValue(parse(tokens, where));
    if (!value)
        throw AsmError{std::string(what) + " has to be known while assembling"};
    return *value;
}

TOBFExpr* AsmExpressions::here()
{
    auto* marker = new TOBFMarker;
    m_sections.add(marker, AsmSections::Flow::None);
    return new TOBFMarkerExpr(marker);
}

TOBFExpr* AsmExpressions::binary(int lowestRank)
{
    TOBFExpr* left = unary();
    for (;;) {
        const BinaryOperator* op = findOperator(m_tokens->peek());
        if (op == nullptr || op->rank < lowestRank)
            return left;
        m_tokens->next();
        TOBFExpr* right = binary(op->rank + 1);
        left = checked(TOBFBinaryExpr::make(op->tag, left, right));
    }
}

TOBFExpr* AsmExpressions::unary()
{
    if (++m_depth > MaximumNesting)
        throw AsmError{"expression is nested too deeply"};
    TOBFExpr* result = nullptr;
    if (m_tokens->accept("-"))
        result = TOBFBinaryExpr::make(TAG_SUB, constant(0), unary());
    else if (m_tokens->accept("~"))
        result = TOBFBinaryExpr::make(TAG_XOR, unary(), constant(-1));
    else if (m_tokens->accept("!"))
        result = TOBFBinaryExpr::make(TAG_EQ, unary(), constant(0));
    else if (m_tokens->accept("+"))
        result = unary();
    else
        result = primary();
    --m_depth;
    return checked(result);
}

TOBFExpr* AsmExpressions::primary()
{
    if (m_tokens->accept("(")) {
        TOBFExpr* inner = binary(LowestRank);
        m_tokens->expect(")");
        return inner;
    }
    const AsmToken token = m_tokens->peek(); // a copy, since it is taken
    if (token.kind != AsmToken::Name && token.kind != AsmToken::Number
        && token.kind != AsmToken::LabelRef)
        throw AsmError{m_tokens->atEnd()
                           ? std::string("missing expression")
                           : "missing expression before '" + std::string(token.text) + "'"};
    m_tokens->next();
    if (token.kind == AsmToken::Number)
        return constant(token.value);
    if (token.kind == AsmToken::LabelRef)
        return m_symbols.numbered(token.value, token.forward, *m_where);
    const std::string name(token.text);
    if (name == "." || name == "$")
        return here();
    if (registerNumber(name))
        throw AsmError{"register '" + name + "' in an expression"};
    if ((name == "lo" || name == "hi") && m_tokens->sees("(")
        && !registerNumber(m_tokens->peek(1).text))
        return half(name);
    return m_symbols.reference(name, *m_where);
}

TOBFExpr* AsmExpressions::half(const std::string& function)
{
    m_tokens->expect("(");
    TOBFExpr* value = binary(LowestRank);
    m_tokens->expect(")");
    if (function == "hi")
        value = TOBFBinaryExpr::make(TAG_SHR, value, constant(16));
    return TOBFBinaryExpr::make(TAG_AND, value, constant(0xFFFF));
}

TOBFExpr* AsmExpressions::checked(TOBFExpr* expr) const
{
    if (expr->kind() == TOBFKind::BinaryExpr
        && static_cast<TOBFBinaryExpr*>(expr)->size() > MaximumOperations)
        throw AsmError{"expression has too many operations"};
    return expr;
}
