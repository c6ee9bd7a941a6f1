// The types of casts: the part of the expression parser that reads what stands in "(type)".

#include "debugger/expressions/BaseType.h"
#include "debugger/expressions/CStyleLexer.h"
#include "debugger/expressions/ExpressionParser.h"
#include "debugger/expressions/ParserException.h"

#include <algorithm>
#include <cstdlib>

namespace {

using Token = CStyleLexer::Token;

constexpr int LowestLevel = -4;
/// Stars and brackets behind a type.
constexpr int LongestPostfix = 100;

/// The words of a type without a name, in any order, as C has them.
class TypeWords {
public:
    /// False for a word that belongs to no type.
    bool take(const std::string& word)
    {
        struct Word {
            const char* text;
            SimpleType::Code code;
        };
        static constexpr Word codes[] = {{"char", SimpleType::Char},
                                         {"short", SimpleType::Short},
                                         {"float", SimpleType::Float},
                                         {"double", SimpleType::Double}};
        if (word == "unsigned")
            m_unsigned = true;
        else if (word == "long")
            ++m_longs;
        else if (word != "int" && word != "signed" && word != "const" && word != "volatile") {
            const auto* it = std::find_if(std::begin(codes), std::end(codes),
                                          [&](const Word& entry) { return word == entry.text; });
            if (it == std::end(codes))
                return false;
            m_code = it->code;
        }
        m_any = m_any || (word != "const" && word != "volatile");
        m_taken = true;
        return true;
    }

    /// Whether there was a word, and one that says more than "const" and "volatile".
    bool taken() const { return m_taken; }
    bool any() const { return m_any; }

    BaseTypePtr type() const
    {
        if (m_code != SimpleType::Int)
            return std::make_shared<SimpleType>(m_code, m_unsigned && m_code < SimpleType::Float);
        const SimpleType::Code integers[] = {SimpleType::Int, SimpleType::Long,
                                             SimpleType::LongLong};
        return std::make_shared<SimpleType>(integers[std::min(m_longs, 2)], m_unsigned);
    }

private:
    SimpleType::Code m_code = SimpleType::Int;
    int m_longs = 0;
    bool m_unsigned = false;
    bool m_any = false;
    bool m_taken = false;
};

} // namespace

/// Null, with nothing consumed, if no type begins here.
ExpressionPtr ExpressionParser::parseCast()
{
    if (!isToken(Token::Identifier))
        return nullptr;
    BaseTypePtr type;
    if (isWord("struct"))
        type = parseStructType();
    else if (isWord("register"))
        type = parseRegisterType();
    else
        type = parseSimpleType();
    if (type == nullptr)
        return nullptr;
    type = parsePostfixType(std::move(type));
    expect(Token::CloseParenthesis, "')' expected");
    return std::make_shared<CastExpression>(std::move(type), parseExpression(LowestLevel), this);
}

BaseTypePtr ExpressionParser::parsePostfixType(BaseTypePtr type)
{
    for (int i = 0; isToken(Token::Star) || isToken(Token::OpenBracket); ++i) {
        if (i == LongestPostfix)
            throw ParserException("expression is too complex");
        const bool isPointer = isToken(Token::Star);
        m_lexer->gettok();
        if (isPointer) {
            type = std::make_shared<PointerType>(std::move(type));
            continue;
        }
        ExpressionPtr size = parseExpression(LowestLevel);
        expect(Token::CloseBracket, "']' expected");
        type = std::make_shared<ArrayType>(std::move(type), std::move(size));
    }
    return type;
}

/// Null if no type begins here.
BaseTypePtr ExpressionParser::parseSimpleType()
{
    TypeWords words;
    BaseTypePtr named;
    while (isToken(Token::Identifier)) {
        const std::string& word = m_lexer->text();
        if (!words.any() && named == nullptr && isUserTypeName(word.c_str()))
            named = std::make_shared<UserType>(word);
        else if ((named != nullptr && word != "const" && word != "volatile") || !words.take(word))
            break;
        m_lexer->gettok();
    }
    if (named != nullptr)
        return named;
    return words.taken() ? words.type() : nullptr;
}

BaseTypePtr ExpressionParser::parseStructType()
{
    m_lexer->gettok();
    if (isToken(Token::Identifier)) {
        const std::string name = "struct " + m_lexer->text();
        if (!isUserTypeName(name.c_str()))
            throw ParserException("struct type not found");
        m_lexer->gettok();
        return std::make_shared<UserType>(name);
    }
    expect(Token::OpenBrace, "'{' expected");
    return parseStructMembers();
}

BaseTypePtr ExpressionParser::parseStructMembers()
{
    std::vector<StructType::Field> fields;
    while (!isToken(Token::CloseBrace)) {
        StructType::Field field{{}, parseSimpleType(), 0};
        if (field.type == nullptr)
            throw ParserException("struct parse error");
        if (isToken(Token::Identifier))
            field.name = takeText();
        if (isToken(Token::Colon)) {
            m_lexer->gettok();
            field.bits = parseInteger("integer must follow ':'");
        }
        expect(Token::Semicolon, "';' expected");
        fields.push_back(std::move(field));
    }
    m_lexer->gettok();
    return std::make_shared<StructType>(std::move(fields));
}

BaseTypePtr ExpressionParser::parseRegisterType()
{
    m_lexer->gettok();
    const int size = parseInteger("size expected");
    std::vector<RegisterType::Field> fields;
    while (!isToken(Token::Semicolon)) {
        RegisterType::Field field{};
        if (isToken(Token::Identifier)) {
            field.name = takeText();
        } else if (isToken(Token::String)) {
            const std::string text = takeText();
            field.name = text.substr(1, text.size() - 2);
        } else {
            throw ParserException("fieldname expected");
        }
        field.bitOffset = parseInteger("bitoffset expected");
        field.bits = parseInteger("bitsize expected");
        fields.push_back(std::move(field));
    }
    m_lexer->gettok();
    return std::make_shared<RegisterType>(size, std::move(fields));
}

/// A decimal, or the largest number where it is larger than that.
int ExpressionParser::parseInteger(const char* otherwise)
{
    if (!isToken(Token::Decimal))
        throw ParserException(otherwise);
    constexpr unsigned long long Largest = 0x7FFFFFFF;
    return static_cast<int>(std::min(std::strtoull(takeText().c_str(), nullptr, 10), Largest));
}
