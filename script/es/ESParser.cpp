#include "script/es/ESParser.h"

#include "script/es/ESCode.h"
#include "script/es/ESContext.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Levels of the parser's own recursion, and heights of trees; both are walked by recursion.
constexpr int MaximumDepth = 400;
constexpr int MaximumHeight = 4000;

constexpr int OperatorsPerLevel = 4;
/// Binary operators by level, lowest first.
constexpr int LeftAssociative[][OperatorsPerLevel] = {
    {'|', 0, 0, 0},
    {'^', 0, 0, 0},
    {'&', 0, 0, 0},
    {ESToken::Equal, ESToken::NotEqual, 0, 0},
    {'<', '>', ESToken::LessEqual, ESToken::GreaterEqual},
    {ESToken::Shl, ESToken::Shr, ESToken::Ushr, 0},
    {'+', '-', 0, 0},
    {'*', '/', '%', 0},
};
constexpr int Levels = int(std::size(LeftAssociative));

bool isAssignment(int token)
{
    return token == '=' || (token >= ESToken::AndAssign && token <= ESToken::ModAssign);
}

bool isOfLevel(int token, int level)
{
    const auto& operators = LeftAssociative[level];
    return token != 0
        && std::find(std::begin(operators), std::end(operators), token) != std::end(operators);
}

} // namespace

/// Counts one level of recursion while it lives.
class ESParser::Nesting {
public:
    explicit Nesting(ESParser& parser) : m_parser(parser)
    {
        if (++m_parser.m_depth > MaximumDepth)
            parser.fail(u"nested too deeply"_s);
    }
    ~Nesting() { --m_parser.m_depth; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

private:
    ESParser& m_parser;
};

// Tokens and nodes

void ESParser::fail(const QString& message) const { throw ESSyntaxError{message, m_lexer.line()}; }

int ESParser::peek()
{
    const int token = m_lexer.lex();
    m_lexer.pushBack(token);
    return token;
}

bool ESParser::take(int token)
{
    if (peek() != token)
        return false;
    m_lexer.lex();
    return true;
}

void ESParser::accept(int token)
{
    const int found = m_lexer.lex();
    if (found != token)
        fail(u"expected "_s + esTokenName(token) + u" found "_s + esTokenName(found));
}

void ESParser::semi()
{
    const int token = peek();
    if (token == ';')
        m_lexer.lex();
    else if (token != '}' && token != ESToken::End && !m_lexer.newlineBefore())
        accept(';');
}

ESNode* ESParser::make(int kind, std::initializer_list<ESNode*> children)
{
    m_nodes.emplace_back(kind, m_lexer.line());
    ESNode* node = &m_nodes.back();
    std::copy(children.begin(), children.end(), node->child);
    return finish(node);
}

/// Computes the height of a node whose children stand.
ESNode* ESParser::finish(ESNode* node)
{
    for (const ESNode* child : node->child)
        if (child)
            node->height = std::max(node->height, child->height + 1);
    for (const ESNode* child : node->list)
        if (child)
            node->height = std::max(node->height, child->height + 1);
    if (node->height > MaximumHeight)
        fail(u"expression too long"_s);
    return node;
}

ESNode* ESParser::identifier(ESString* name)
{
    ESNode* node = make(ESToken::Identifier);
    node->name = name;
    for (auto known = m_catchNames.rbegin(); known != m_catchNames.rend(); ++known)
        if (known->name == name) {
            if (known->variable)
                node->name = known->variable;
            break;
        }
    return node;
}

// Variables

ESString* ESParser::makeTemporaryName()
{
    static int count = 0;
    return ESStringPool::intern(u"CG%1"_s.arg(count++));
}

void ESParser::codevar(ESFunctionNode* function, ESString* name, unsigned flags,
                       bool replaceDuplicate)
{
    if (!function) {
        m_context->globalSlot(name, flags);
        return;
    }
    ESCode& code = *function->code;
    for (ESProperty& variable : code.variables)
        if (variable.name == name) {
            if (!replaceDuplicate)
                return;
            variable.name = makeTemporaryName();
        }
    code.variables.push_back({name, flags, {}});
    ++(flags & ESProperty::Parameter ? code.parameterCount : code.localCount);
}

// Statements

ESNode* ESParser::parseProgram() { return stmts(ESToken::End); }

ESNode* ESParser::stmts(int terminator)
{
    const Nesting nesting(*this);
    // Function declarations run before the other statements of their list.
    std::vector<ESNode*> declarations;
    std::vector<ESNode*> statements;
    for (int token = peek(); token != terminator && token != ESToken::End; token = peek()) {
        if (token != ESToken::Function) {
            statements.push_back(stmt());
            continue;
        }
        m_lexer.lex();
        ESNode* function = fundecl(false);
        ESNode* target = make(ESToken::Identifier);
        target->name = function->name;
        declarations.push_back(make(ESToken::Var, {make('=', {target, function})}));
    }
    ESNode* list = make(ESToken::Block);
    list->list = std::move(declarations);
    list->list.insert(list->list.end(), statements.begin(), statements.end());
    return finish(list);
}

ESNode* ESParser::block()
{
    accept('{');
    ESNode* list = stmts('}');
    accept('}');
    return list;
}

ESNode* ESParser::parenthesized()
{
    accept('(');
    ESNode* node = exp();
    accept(')');
    return node;
}

ESNode* ESParser::stmt()
{
    const Nesting nesting(*this);
    const int token = m_lexer.lex();
    switch (token) {
    case '{': m_lexer.pushBack(token); return block();
    case ';': return make(ESToken::Empty);
    case ESToken::Var: return varStatement();
    case ESToken::If: return ifStatement();
    case ESToken::While: return whileStatement();
    case ESToken::Do: return doStatement();
    case ESToken::For: return forStatement();
    case ESToken::Break:
    case ESToken::Continue: return jumpStatement(token);
    case ESToken::With: return withStatement();
    case ESToken::Switch: return switchStatement();
    case ESToken::Return: return returnStatement();
    case ESToken::Throw: return throwStatement();
    case ESToken::Try: return tryStatement();
    default: m_lexer.pushBack(token); return expressionStatement();
    }
}

ESNode* ESParser::expressionStatement()
{
    ESNode* node = exp();
    if (node->kind == ESToken::Identifier && take(':')) {
        ESNode* label = make(ESToken::Label, {stmt()});
        label->name = node->name;
        return label;
    }
    semi();
    return make(ESToken::ExpressionStatement, {node});
}

ESNode* ESParser::varStatement()
{
    ESNode* list = varlist();
    semi();
    return make(ESToken::Var, {list});
}

/// The declarations behind "var": a comma tree of assignments and of names without a value.
ESNode* ESParser::varlist()
{
    ESNode* tree = nullptr;
    do {
        accept(ESToken::Identifier);
        ESNode* name = identifier(m_lexer.string());
        codevar(m_function, name->name, ESProperty::DontEnum | ESProperty::DontDelete);
        ESNode* item = make(ESToken::VarDeclaration, {name, take('=') ? asexp() : nullptr});
        tree = tree ? make(ESToken::Comma, {tree, item}) : item;
    } while (take(','));
    return tree;
}

ESNode* ESParser::ifStatement()
{
    ESNode* condition = parenthesized();
    ESNode* first = stmt();
    ESNode* second = take(ESToken::Else) ? stmt() : nullptr;
    return make(ESToken::If, {condition, first, second});
}

ESNode* ESParser::whileStatement()
{
    ESNode* condition = parenthesized();
    return make(ESToken::While, {condition, stmt()});
}

ESNode* ESParser::doStatement()
{
    ESNode* body = block();
    accept(ESToken::While);
    ESNode* condition = parenthesized();
    semi();
    return make(ESToken::Do, {condition, body});
}

ESNode* ESParser::forStatement()
{
    accept('(');
    ESNode* first = nullptr;
    if (take(ESToken::Var)) {
        ESNode* list = varlist();
        if (take(ESToken::In)) {
            if (list->kind == ESToken::Comma)
                fail(u"too many variables in for-in expression"_s);
            return forInStatement(list->child[0], list->child[1] ? list : nullptr);
        }
        first = list;
    } else if (peek() != ';') {
        first = exp();
        if (take(ESToken::In))
            return forInStatement(checkTarget(first), nullptr);
    }
    accept(';');
    ESNode* test = peek() == ';' ? nullptr : exp();
    accept(';');
    ESNode* step = peek() == ')' ? nullptr : exp();
    accept(')');
    return make(ESToken::For, {first, test, step, stmt()});
}

ESNode* ESParser::forInStatement(ESNode* target, ESNode* initial)
{
    ESNode* object = exp();
    accept(')');
    ESNode* node = make(ESToken::ForIn, {target, object, nullptr, initial});
    node->name = makeTemporaryName();
    codevar(m_function, node->name, ESProperty::DontEnum | ESProperty::DontDelete);
    node->child[2] = stmt();
    return finish(node);
}

ESNode* ESParser::jumpStatement(int kind)
{
    ESNode* node = make(kind);
    if (peek() == ESToken::Identifier && !m_lexer.newlineBefore()) {
        m_lexer.lex();
        node->name = m_lexer.string();
    }
    semi();
    return node;
}

ESNode* ESParser::withStatement()
{
    ESNode* object = parenthesized();
    ++m_withDepth;
    ESNode* body = stmt();
    --m_withDepth;
    return make(ESToken::With, {object, body});
}

ESNode* ESParser::switchStatement()
{
    ESNode* node = make(ESToken::Switch, {parenthesized()});
    accept('{');
    bool hasDefault = false;
    while (!take('}')) {
        const int token = m_lexer.lex();
        if (token != ESToken::Case && token != ESToken::Default)
            fail(u"expected 'case' or 'default' but found '"_s + esTokenName(token) + u'\'');
        if (token == ESToken::Default && hasDefault)
            fail(u"default case already defined"_s);
        hasDefault = hasDefault || token == ESToken::Default;
        ESNode* value = token == ESToken::Case ? exp() : nullptr;
        accept(':');
        ESNode* body = make(ESToken::Block);
        for (int next = peek(); next != '}' && next != ESToken::Case && next != ESToken::Default
             && next != ESToken::End;
             next = peek())
            body->list.push_back(stmt());
        node->list.push_back(make(ESToken::Clause, {value, finish(body)}));
    }
    return finish(node);
}

ESNode* ESParser::returnStatement()
{
    if (!m_function)
        fail(esTokenName(ESToken::Return) + u" not in a function"_s);
    const int token = peek();
    ESNode* value = nullptr;
    if (token != ';' && token != '}' && token != ESToken::End && !m_lexer.newlineBefore())
        value = exp();
    semi();
    return make(ESToken::Return, {value});
}

ESNode* ESParser::throwStatement()
{
    ESNode* value = exp();
    semi();
    return make(ESToken::Throw, {value});
}

ESNode* ESParser::tryStatement()
{
    ESNode* node = make(ESToken::TryStatement, {block()});
    if (take(ESToken::Catch)) {
        accept('(');
        accept(ESToken::Identifier);
        // The caught value is a variable that only this block knows.
        ESNode* variable = make(ESToken::Identifier);
        variable->name = makeTemporaryName();
        codevar(m_function, variable->name, ESProperty::DontEnum | ESProperty::DontDelete);
        m_catchNames.push_back({m_lexer.string(), variable->name});
        accept(')');
        node->child[1] = variable;
        node->child[2] = block();
        m_catchNames.pop_back();
    }
    if (take(ESToken::Finally))
        node->child[3] = block();
    if (!node->child[1] && !node->child[3])
        fail(u"'catch' or 'finally' clause expected after 'try'"_s);
    return finish(node);
}

// Functions

ESNode* ESParser::fundecl(bool nameOptional)
{
    ESString* name = nullptr;
    if (!nameOptional || peek() == ESToken::Identifier) {
        accept(ESToken::Identifier);
        name = m_lexer.string();
        codevar(m_function, name, 0);
    }
    accept('(');
    std::vector<ESString*> parameters;
    if (!take(')')) {
        do {
            accept(ESToken::Identifier);
            parameters.push_back(m_lexer.string());
        } while (take(','));
        accept(')');
    }
    accept('{');
    ESNode* node = functionBody(name, parameters, '}');
    accept('}');
    return node;
}

ESNode* ESParser::functionBody(ESString* name, const std::vector<ESString*>& parameters,
                               int terminator)
{
    const Nesting nesting(*this);
    ESNode* node = make(ESToken::FunctionExpression);
    node->name = name;
    m_functionNodes.emplace_back();
    ESFunctionNode* function = &m_functionNodes.back();
    function->enclosing = m_function;
    function->code = new ESCode;
    function->line = m_lexer.line();
    function->insideWith = m_withDepth > 0;
    node->function = m_context->adoptFunctionCode(function->code);
    m_function = function;
    const std::size_t catchNames = m_catchNames.size();
    for (ESString* parameter : parameters) {
        codevar(function, parameter, ESProperty::Parameter | ESProperty::DontDelete, true);
        m_catchNames.push_back({parameter, nullptr});
    }
    function->body = stmts(terminator);
    m_catchNames.resize(catchNames);
    m_function = function->enclosing;
    m_functions.push_back(function);
    return node;
}

ESNode* ESParser::parseBodyOf(const QString& name, const std::vector<ESString*>& parameters)
{
    ESNode* node = functionBody(ESStringPool::intern(name), parameters, ESToken::End);
    accept(ESToken::End);
    return node;
}

// Expressions

ESNode* ESParser::exp()
{
    ESNode* node = asexp();
    while (take(','))
        node = make(ESToken::Comma, {node, asexp()});
    return node;
}

ESNode* ESParser::checkTarget(ESNode* node)
{
    if (node->kind != ESToken::Identifier && node->kind != ESToken::Member
        && node->kind != ESToken::Element)
        fail(u"only left-hand-side expressions allowed"_s);
    return node;
}

ESNode* ESParser::asexp()
{
    const Nesting nesting(*this);
    ESNode* node = condexp();
    const int token = peek();
    if (!isAssignment(token))
        return node;
    m_lexer.lex();
    checkTarget(node);
    return make(token, {node, asexp()});
}

ESNode* ESParser::condexp()
{
    ESNode* node = ororexp();
    if (!take('?'))
        return node;
    ESNode* first = asexp();
    accept(':');
    return make(ESToken::Conditional, {node, first, asexp()});
}

ESNode* ESParser::ororexp()
{
    ESNode* node = andandexp();
    while (take(ESToken::OrOr))
        node = make(ESToken::OrOr, {node, andandexp()});
    return node;
}

ESNode* ESParser::andandexp()
{
    ESNode* node = laexp(0);
    while (take(ESToken::AndAnd))
        node = make(ESToken::AndAnd, {node, laexp(0)});
    return node;
}

ESNode* ESParser::laexp(int level)
{
    ESNode* node = unexp();
    for (int at = Levels - 1; at >= level; --at)
        for (int token = peek(); isOfLevel(token, at); token = peek()) {
            m_lexer.lex();
            node = make(token, {node, laexp(at + 1)});
        }
    return node;
}

ESNode* ESParser::unexp()
{
    const Nesting nesting(*this);
    const int token = peek();
    switch (token) {
    case ESToken::Delete:
    case ESToken::PlusPlus:
    case ESToken::MinusMinus: m_lexer.lex(); return make(token, {checkTarget(unexp())});
    case ESToken::Void:
    case ESToken::Typeof:
    case '~':
    case '!': m_lexer.lex(); return make(token, {unexp()});
    case '+': m_lexer.lex(); return make(ESToken::Plus, {unexp()});
    case '-': {
        m_lexer.lex();
        ESNode* operand = unexp();
        if (operand->kind != ESToken::Number)
            return make(ESToken::Minus, {operand});
        operand->number = -operand->number;
        return operand;
    }
    default: return postexp();
    }
}

ESNode* ESParser::postexp()
{
    ESNode* node = lhsexp();
    const int token = peek();
    if ((token != ESToken::PlusPlus && token != ESToken::MinusMinus) || m_lexer.newlineBefore())
        return node;
    m_lexer.lex();
    return make(token == ESToken::PlusPlus ? ESToken::PostIncrement : ESToken::PostDecrement,
                {checkTarget(node)});
}

ESNode* ESParser::lhsexp()
{
    ESNode* node = peek() == ESToken::New ? newexp() : primexp();
    return members(node, true);
}

/// What stands behind an expression: members, and calls if those are wanted.
ESNode* ESParser::members(ESNode* node, bool withCalls)
{
    for (;;) {
        if (take('.')) {
            const int token = m_lexer.lex();
            // A keyword is a name here.
            if (token < ESToken::FirstKeyword && token != ESToken::Identifier) {
                m_lexer.pushBack(token);
                accept(ESToken::Identifier);
            }
            ESString* name = m_lexer.string();
            node = make(ESToken::Member, {node});
            node->name = name;
        } else if (take('[')) {
            ESNode* key = exp();
            accept(']');
            node = make(ESToken::Element, {node, key});
        } else if (withCalls && take('(')) {
            node = make(ESToken::Call, {node});
            node->list = arguments();
            finish(node);
        } else {
            return node;
        }
    }
}

ESNode* ESParser::newexp()
{
    const Nesting nesting(*this);
    accept(ESToken::New);
    ESNode* callee = members(peek() == ESToken::New ? newexp() : primexp(), false);
    if (!take('('))
        return make(ESToken::New, {callee});
    ESNode* node = make(ESToken::NewWithArguments, {callee});
    node->list = arguments();
    return finish(node);
}

/// Up to the closing parenthesis; the opening one is read.
std::vector<ESNode*> ESParser::arguments()
{
    std::vector<ESNode*> list;
    if (take(')'))
        return list;
    do
        list.push_back(asexp());
    while (take(','));
    accept(')');
    return list;
}

ESNode* ESParser::primexp()
{
    const int token = m_lexer.lex();
    switch (token) {
    case ESToken::Identifier: return identifier(m_lexer.string());
    case ESToken::Number: {
        ESNode* node = make(token);
        node->number = m_lexer.number();
        return node;
    }
    case ESToken::String: {
        ESNode* node = make(token);
        node->name = m_lexer.string();
        return node;
    }
    case ESToken::This:
    case ESToken::True:
    case ESToken::False:
    case ESToken::Null: return make(token);
    case '(': {
        ESNode* node = exp();
        accept(')');
        return node;
    }
    case '[': return arrayLiteral();
    case '{': return objectLiteral();
    case ESToken::Function: return fundecl(true);
    default: fail(u"expected an expression, found "_s + esTokenName(token));
    }
}

ESNode* ESParser::arrayLiteral()
{
    ESNode* node = make(ESToken::ArrayLiteral);
    while (!take(']')) {
        if (take(',')) {
            node->list.push_back(nullptr);
            continue;
        }
        node->list.push_back(asexp());
        const int token = m_lexer.lex();
        if (token == ']')
            break;
        if (token != ',')
            fail(u"']' or ',' expected, found "_s + esTokenName(token));
    }
    return finish(node);
}

ESNode* ESParser::objectLiteral()
{
    ESNode* node = make(ESToken::ObjectLiteral);
    if (take('}'))
        return node;
    do {
        const int token = m_lexer.lex();
        ESString* key = nullptr;
        if (token == ESToken::Number)
            key = m_context->numberName(m_lexer.number());
        else if (token == ESToken::String || token == ESToken::Identifier)
            key = m_lexer.string();
        else
            fail(u"number, string, or identifier expected in object initialiser"_s);
        accept(':');
        ESNode* pair = make(ESToken::Pair, {asexp()});
        pair->name = key;
        node->list.push_back(pair);
    } while (take(','));
    accept('}');
    return finish(node);
}
