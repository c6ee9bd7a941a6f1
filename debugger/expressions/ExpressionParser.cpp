#include "debugger/expressions/ExpressionParser.h"

#include "debugger/expressions/CStyleLexer.h"
#include "debugger/expressions/ParserException.h"

#include <cstdlib>

namespace {

using Token = CStyleLexer::Token;

constexpr int LowestLevel = -4;
constexpr int HighestLevel = 9;
constexpr int DeepestNesting = 200;

template <typename Node> ExpressionPtr make(ExpressionPtr left, ExpressionPtr right)
{
    return std::make_shared<Node>(std::move(left), std::move(right));
}

/// The node of an operator, and of the assignment that goes with it.
struct Operator {
    int token;
    int assignment; ///< EndOfText if there is none
    ExpressionPtr (*make)(ExpressionPtr left, ExpressionPtr right);
};

constexpr Operator operators[] = {
    {Token::Plus, Token::PlusAssign, make<PlusExpression>},
    {Token::Minus, Token::MinusAssign, make<MinusExpression>},
    {Token::Star, Token::StarAssign, make<MultiplyExpression>},
    {Token::Slash, Token::SlashAssign, make<DivideExpression>},
    {Token::Percent, Token::PercentAssign, make<ModExpression>},
    {Token::ShiftRight, Token::ShiftRightAssign, make<RshiftExpression>},
    {Token::ShiftLeft, Token::ShiftLeftAssign, make<LshiftExpression>},
    {Token::Ampersand, Token::AmpersandAssign, make<BitAndExpression>},
    {Token::Caret, Token::CaretAssign, make<BitXorExpression>},
    {Token::Bar, Token::BarAssign, make<BitOrExpression>},
    {Token::LogicalAnd, Lexer::EndOfText, make<LogicalAndExpression>},
    {Token::LogicalOr, Lexer::EndOfText, make<LogicalOrExpression>},
    {Token::Equal, Lexer::EndOfText, make<EqExpression>},
    {Token::NotEqual, Lexer::EndOfText, make<NeExpression>},
    {Token::Less, Lexer::EndOfText, make<LtExpression>},
    {Token::LessEqual, Lexer::EndOfText, make<LeExpression>},
    {Token::Greater, Lexer::EndOfText, make<GtExpression>},
    {Token::GreaterEqual, Lexer::EndOfText, make<GeExpression>},
};

ExpressionPtr integer(long long value)
{
    return std::make_shared<IntegerConstantExpression>(ExpressionType(value, 8, 0));
}

} // namespace

/// Bounds the recursion, so that no text exhausts the stack.
class ExpressionParser::Nesting {
public:
    explicit Nesting(ExpressionParser& parser) : m_depth(parser.m_nesting)
    {
        if (m_depth >= DeepestNesting)
            throw ParserException("expression is too complex");
        ++m_depth;
    }
    ~Nesting() { --m_depth; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

private:
    int& m_depth;
};

ExpressionPtr ExpressionParser::parse(const char* text, int* end)
{
    if (text == nullptr || *text == '\0')
        return nullptr;
    m_lexer->reset(text);
    ExpressionPtr expression = parseExpression(LowestLevel);
    if (end != nullptr)
        *end = m_lexer->position();
    return expression;
}

ExpressionType ExpressionParser::parseAndEvaluate(const char* text, int* end)
{
    const ExpressionPtr expression = parse(text, end);
    return expression != nullptr ? expression->evaluate() : ExpressionType();
}

/// All operators group from the left, so that one loop serves every level from `level` up.
ExpressionPtr ExpressionParser::parseExpression(int level)
{
    ExpressionPtr left = parseExpr10();
    while (m_lexer->precedence() >= level && m_lexer->precedence() <= HighestLevel) {
        const int token = m_lexer->token();
        const int precedence = m_lexer->precedence();
        m_lexer->gettok();
        ExpressionPtr right = parseExpression(precedence + 1);
        left = makeBinary(token, std::move(left), std::move(right));
    }
    return left;
}

ExpressionPtr ExpressionParser::makeBinary(int token, ExpressionPtr left, ExpressionPtr right)
{
    if (token == Token::Assign)
        return std::make_shared<AssignExpression>(std::move(left), std::move(right), this);
    for (const Operator& it : operators) {
        if (it.token == token)
            return it.make(std::move(left), std::move(right));
        if (it.assignment == token)
            return std::make_shared<AssignExpression>(left, it.make(left, std::move(right)), this);
    }
    throw ParserException("operator not supported");
}

ExpressionPtr ExpressionParser::parseExpr10()
{
    const Nesting nesting(*this);
    return parsePostfix(parseOperand());
}

ExpressionPtr ExpressionParser::parseOperand()
{
    const int token = m_lexer->token();
    switch (token) {
    case Token::Decimal:
    case Token::Hexadecimal:
    case Token::Floating:
    case Token::String: return parseConstant();
    case Token::Identifier: return isWord("sizeof") ? parseSizeof() : parseIdentifier(false);
    case Token::Scope: m_lexer->gettok(); return parseIdentifier(true);
    case Token::Register: return std::make_shared<RegisterExpression>(takeText().substr(1), this);
    case Token::OpenParenthesis: return parseParenthesis();
    case Token::Increment:
    case Token::Decrement:
    case Token::Minus:
    case Token::Tilde:
    case Token::Exclamation:
    case Token::Plus:
    case Token::Star:
    case Token::Ampersand: return parseUnary(token);
    default: throw ParserException("expression expected");
    }
}

ExpressionPtr ExpressionParser::parseConstant()
{
    const int token = m_lexer->token();
    const std::string text = takeText();
    if (token == Token::Floating)
        return std::make_shared<FloatConstantExpression>(
            ExpressionType(std::strtod(text.c_str(), nullptr), 8));
    if (token == Token::String) {
        const ExpressionType model("", 0);
        return std::make_shared<StringConstantExpression>(
            ExpressionType(model, QString::fromStdString(text.substr(1, text.size() - 2)), 10));
    }
    const int radix = token == Token::Hexadecimal ? 16 : 10;
    return integer(static_cast<long long>(std::strtoull(text.c_str(), nullptr, radix)));
}

ExpressionPtr ExpressionParser::parseParenthesis()
{
    m_lexer->gettok();
    if (ExpressionPtr cast = parseCast())
        return cast;
    ExpressionPtr expression = parseExpression(LowestLevel);
    expect(Token::CloseParenthesis, "')' expected");
    return expression;
}

ExpressionPtr ExpressionParser::parseSizeof()
{
    m_lexer->gettok();
    expect(Token::OpenParenthesis, "'(' expected");
    ExpressionPtr operand = parseExpression(LowestLevel);
    expect(Token::CloseParenthesis, "')' expected");
    return std::make_shared<SizeofExpression>(std::move(operand), this);
}

ExpressionPtr ExpressionParser::parseUnary(int token)
{
    m_lexer->gettok();
    ExpressionPtr operand = parseExpr10();
    switch (token) {
    case Token::Increment: return changedByOne(operand, true);
    case Token::Decrement: return changedByOne(operand, false);
    case Token::Minus: return std::make_shared<NegateExpression>(std::move(operand));
    case Token::Tilde: return std::make_shared<BitNotExpression>(std::move(operand));
    case Token::Exclamation: return std::make_shared<LogicalNotExpression>(std::move(operand));
    case Token::Ampersand: return std::make_shared<AddressofExpression>(std::move(operand), this);
    case Token::Star:
        return element(std::move(operand),
                       std::make_shared<IntegerConstantExpression>(ExpressionType(0ULL, 2, 0)));
    default: return operand;
    }
}

ExpressionPtr ExpressionParser::parsePostfix(ExpressionPtr expression)
{
    for (;;) {
        const int token = m_lexer->token();
        switch (token) {
        case Token::OpenBracket: {
            m_lexer->gettok();
            ExpressionPtr index = parseExpression(LowestLevel);
            expect(Token::CloseBracket, "expected ']'");
            expression = element(std::move(expression), std::move(index));
            break;
        }
        case Token::Dot:
        case Token::Arrow:
            m_lexer->gettok();
            expression = std::make_shared<DotExpression>(std::move(expression),
                                                         parseIdentifier(false), this);
            break;
        case Token::Increment:
        case Token::Decrement:
            m_lexer->gettok();
            expression = changedByOne(expression, token == Token::Increment);
            break;
        case Token::OpenParenthesis: expression = parseArguments(std::move(expression)); break;
        default: return expression;
        }
    }
}

ExpressionPtr ExpressionParser::parseArguments(ExpressionPtr function)
{
    m_lexer->gettok();
    std::vector<ExpressionPtr> arguments;
    while (!isToken(Token::CloseParenthesis)) {
        arguments.push_back(parseExpr10());
        if (isToken(Token::Comma))
            m_lexer->gettok();
    }
    m_lexer->gettok();
    return std::make_shared<CallExpression>(std::move(function), std::move(arguments), this);
}

ExpressionPtr ExpressionParser::parseIdentifier(bool global)
{
    if (!isToken(Token::Identifier))
        throw ParserException("identifier expected");
    std::string name = takeText();
    if (!global && !isToken(Token::Scope))
        return std::make_shared<IdentifierExpression>(std::move(name), this);
    QStringList names(QString::fromStdString(name));
    while (isToken(Token::Scope)) {
        m_lexer->gettok();
        if (!isToken(Token::Identifier))
            throw ParserException("identifier expected after '::'");
        names.append(QString::fromStdString(takeText()));
    }
    return std::make_shared<ScopedIdentifierExpression>(std::move(names), global, this);
}

ExpressionPtr ExpressionParser::changedByOne(const ExpressionPtr& operand, bool up)
{
    return makeBinary(up ? Token::PlusAssign : Token::MinusAssign, operand, integer(1));
}

ExpressionPtr ExpressionParser::element(ExpressionPtr of, ExpressionPtr index)
{
    return std::make_shared<LeftSquareBracketExpression>(std::move(of), std::move(index), this);
}

bool ExpressionParser::isWord(const char* word) const
{
    return isToken(Token::Identifier) && m_lexer->text() == word;
}

void ExpressionParser::expect(int token, const char* otherwise)
{
    if (!isToken(token))
        throw ParserException(otherwise);
    m_lexer->gettok();
}

std::string ExpressionParser::takeText()
{
    std::string text = m_lexer->text();
    m_lexer->gettok();
    return text;
}
