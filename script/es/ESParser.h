#pragma once

#include "script/es/ESLexer.h"
#include "script/es/ESNode.h"

#include <deque>
#include <memory>

class ESContext;

/// Reads a program into a tree, and declares its variables and functions. Throws ESSyntaxError.
class ESParser {
public:
    explicit ESParser(ESContext* context) : m_context(context) { }

    void setSource(const QString& source) { m_lexer.setSource(source); }
    /// The statements of the whole text.
    ESNode* parseProgram();
    /// A function expression of that name, with the source as its body and these parameters.
    ESNode* parseBodyOf(const QString& name, const std::vector<ESString*>& parameters);

    /// Functions in the order in which their declarations end.
    const std::vector<ESFunctionNode*>& functions() const { return m_functions; }
    int line() const { return m_lexer.line(); }

    /// Declares a variable of the function, or of the global object for null; an existing one is
    /// reused, unless a repeated parameter is to replace it.
    void codevar(ESFunctionNode* function, ESString* name, unsigned flags,
                 bool replaceDuplicate = false);
    /// A fresh name that no program can mention.
    static ESString* makeTemporaryName();

private:
    class Nesting;
    /// What an identifier means while a catch block is read: its own variable.
    struct CatchName {
        ESString* name;
        ESString* variable; ///< null in a function that has a variable of that name
    };

    int peek();
    bool take(int token);
    void accept(int token);
    [[noreturn]] void fail(const QString& message) const;
    void semi();
    ESNode* make(int kind, std::initializer_list<ESNode*> children = {});
    ESNode* finish(ESNode* node);
    ESNode* identifier(ESString* name);

    ESNode* stmts(int terminator);
    ESNode* block();
    ESNode* stmt();
    ESNode* varStatement();
    ESNode* varlist();
    ESNode* ifStatement();
    ESNode* whileStatement();
    ESNode* doStatement();
    ESNode* forStatement();
    ESNode* forInStatement(ESNode* target, ESNode* initial);
    ESNode* jumpStatement(int kind);
    ESNode* withStatement();
    ESNode* switchStatement();
    ESNode* returnStatement();
    ESNode* throwStatement();
    ESNode* tryStatement();
    ESNode* expressionStatement();
    ESNode* parenthesized();

    ESNode* fundecl(bool nameOptional);
    ESNode* functionBody(ESString* name, const std::vector<ESString*>& parameters, int terminator);

    ESNode* exp();
    ESNode* asexp();
    ESNode* condexp();
    ESNode* ororexp();
    ESNode* andandexp();
    ESNode* laexp(int level);
    ESNode* unexp();
    ESNode* postexp();
    ESNode* lhsexp();
    ESNode* newexp();
    ESNode* primexp();
    ESNode* members(ESNode* node, bool withCalls);
    std::vector<ESNode*> arguments();
    ESNode* arrayLiteral();
    ESNode* objectLiteral();
    ESNode* checkTarget(ESNode* node);

    ESContext* m_context;
    ESLexer m_lexer;
    std::deque<ESNode> m_nodes;
    std::deque<ESFunctionNode> m_functionNodes;
    std::vector<ESFunctionNode*> m_functions;
    ESFunctionNode* m_function = nullptr;
    std::vector<CatchName> m_catchNames;
    int m_depth = 0;
    int m_withDepth = 0;
};
