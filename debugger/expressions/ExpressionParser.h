#pragma once

#include "debugger/expressions/Expression.h"
#include "debugger/expressions/Lexer.h"

#include <QStringList>

#include <list>
#include <memory>
#include <string>

/// Reads expressions in the manner of C and evaluates them. What a name, a register, a type or a
/// location means is the business of a class of its own: the operations here refuse, so that this
/// class alone reads expressions of constants.
class ExpressionParser {
public:
    /// Takes the lexer.
    explicit ExpressionParser(Lexer* lexer) : m_lexer(lexer) { }
    virtual ~ExpressionParser() = default;
    ExpressionParser(const ExpressionParser&) = delete;
    ExpressionParser& operator=(const ExpressionParser&) = delete;

    /// The tree of the expression at the beginning of the text, and in `end`, unless null, the
    /// bytes read: those up to the end of the token behind it. Null for a null or empty text.
    /// Throws ParserException.
    ExpressionPtr parse(const char* text, int* end = nullptr);
    /// Undefined for a null or empty text. Throws as above, and what the operations below throw.
    ExpressionType parseAndEvaluate(const char* text, int* end = nullptr);

    virtual ExpressionType getScopedIdentifier(const QStringList& names);
    virtual ExpressionType getIdentifier(const char* name);
    virtual ExpressionType getRegister(const char* name);
    virtual bool isUserTypeName(const char* name);
    virtual ExpressionType cast(const BaseType* type, const ExpressionType& value);
    virtual ExpressionType getDereference(MarkerType* marker, unsigned index);
    virtual ExpressionType getDereference(MarkerType* marker, const char* field);
    virtual ExpressionType getDereference(MarkerType* marker, const QStringList& names);
    virtual ExpressionType getAddressof(MarkerType* marker);
    virtual ExpressionType getSizeof(MarkerType* marker);
    virtual void assign(MarkerType* marker, const ExpressionType& value);
    virtual ExpressionType getValue(MarkerType* marker);
    virtual ExpressionType callFunction(MarkerType* function, std::list<ExpressionType>& arguments);

private:
    class Nesting;

    ExpressionPtr parseExpression(int level);
    ExpressionPtr makeBinary(int token, ExpressionPtr left, ExpressionPtr right);
    ExpressionPtr parseExpr10();
    ExpressionPtr parseOperand();
    ExpressionPtr parseConstant();
    ExpressionPtr parseParenthesis();
    ExpressionPtr parseSizeof();
    ExpressionPtr parseUnary(int token);
    ExpressionPtr parsePostfix(ExpressionPtr expression);
    ExpressionPtr parseArguments(ExpressionPtr function);
    ExpressionPtr parseIdentifier(bool global);
    ExpressionPtr changedByOne(const ExpressionPtr& operand, bool up);
    ExpressionPtr element(ExpressionPtr of, ExpressionPtr index);

    ExpressionPtr parseCast();
    BaseTypePtr parsePostfixType(BaseTypePtr type);
    BaseTypePtr parseSimpleType();
    BaseTypePtr parseStructType();
    BaseTypePtr parseStructMembers();
    BaseTypePtr parseRegisterType();
    int parseInteger(const char* otherwise);

    bool isToken(int token) const { return m_lexer->token() == token; }
    bool isWord(const char* word) const;
    void expect(int token, const char* otherwise);
    /// The text of the current token, which is consumed.
    std::string takeText();

    std::unique_ptr<Lexer> m_lexer;
    int m_nesting = 0;
};
