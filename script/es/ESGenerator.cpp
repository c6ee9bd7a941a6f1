#include "script/es/ESGenerator.h"

#include "script/es/ESContext.h"
#include "script/es/ESParser.h"

using namespace Qt::Literals::StringLiterals;
using Op = ESVmOpcode;

namespace {

/// Addresses have two bytes, of which one value ends chains.
constexpr int LargestAddress = 0xfffe;

struct BinaryOperator {
    int token;
    Op opcode;
    int assignment; ///< the token of its compound assignment, 0 for none
};
constexpr BinaryOperator BinaryOperators[] = {{'+', Op::ADD, ESToken::AddAssign},
                                              {'-', Op::SUB, ESToken::SubAssign},
                                              {'*', Op::MUL, ESToken::MulAssign},
                                              {'/', Op::DIV, ESToken::DivAssign},
                                              {'%', Op::MOD, ESToken::ModAssign},
                                              {'&', Op::BITAND, ESToken::AndAssign},
                                              {'|', Op::BITOR, ESToken::OrAssign},
                                              {'^', Op::BITXOR, ESToken::XorAssign},
                                              {ESToken::Shl, Op::SHL, ESToken::ShlAssign},
                                              {ESToken::Shr, Op::SHR, ESToken::ShrAssign},
                                              {ESToken::Ushr, Op::USHR, ESToken::UshrAssign},
                                              {'<', Op::LT, 0},
                                              {ESToken::LessEqual, Op::LE, 0},
                                              {ESToken::Equal, Op::EQ, 0},
                                              {ESToken::NotEqual, Op::NE, 0}};

const BinaryOperator* binaryOperator(int token)
{
    for (const BinaryOperator& row : BinaryOperators)
        if (row.token == token)
            return &row;
    return nullptr;
}

const BinaryOperator* compoundOperator(int token)
{
    for (const BinaryOperator& row : BinaryOperators)
        if (row.assignment != 0 && row.assignment == token)
            return &row;
    return nullptr;
}

/// The opcodes that reach a variable, by where it is.
struct VariableOpcodes {
    Op get, put, call, increment, decrement;
};
constexpr VariableOpcodes GlobalOpcodes = {Op::GETG, Op::PUTG, Op::CALLG, Op::INCG, Op::DECG};
constexpr VariableOpcodes ArgumentOpcodes = {Op::GETA, Op::PUTA, Op::CALLA, Op::INCA, Op::DECA};
constexpr VariableOpcodes FramedArgumentOpcodes = {Op::GETAM, Op::PUTAM, Op::CALLAM, Op::INCM,
                                                   Op::DECAM};
constexpr VariableOpcodes LocalOpcodes = {Op::GETL, Op::PUTL, Op::CALLL, Op::INCL, Op::DECL};
constexpr VariableOpcodes FramedLocalOpcodes = {Op::GETLM, Op::PUTLM, Op::CALLLM, Op::INCLM,
                                                Op::DECLM};

bool isLoop(const ESNode* node)
{
    return node->kind == ESToken::For || node->kind == ESToken::ForIn
        || node->kind == ESToken::While || node->kind == ESToken::Do;
}

} // namespace

// Code

void ESGenerator::addByte(std::uint8_t byte)
{
    if (here() > LargestAddress)
        throw ESFatalError(u"compiler error: patch constant too large"_s);
    m_code->addbyte(byte, m_line);
}

void ESGenerator::addOperand(int operand)
{
    if (operand < 0 || operand > 0xffff)
        throw ESFatalError(u"compiler error: patch constant too large"_s);
    addByte(static_cast<std::uint8_t>(operand >> 8));
    addByte(static_cast<std::uint8_t>(operand & 0xff));
}

void ESGenerator::write(ESVmOpcode opcode, int operand)
{
    write(opcode);
    addOperand(operand);
}

void ESGenerator::write(ESVmOpcode opcode, int operand, int second)
{
    write(opcode, operand);
    addOperand(second);
}

/// Emits a jump whose operand links to the rest of the chain, and gives the chain's new head.
int ESGenerator::writeJump(ESVmOpcode opcode, int chain)
{
    write(opcode);
    const int head = here();
    addOperand(chain);
    return head;
}

void ESGenerator::patch(int chain, int target)
{
    if (target > LargestAddress)
        throw ESFatalError(u"compiler error: patch constant too large"_s);
    auto& bytes = m_code->bytes;
    while (chain != ESNode::EmptyChain) {
        const auto at = static_cast<std::size_t>(chain);
        chain = bytes[at] << 8 | bytes[at + 1];
        bytes[at] = static_cast<std::uint8_t>(target >> 8);
        bytes[at + 1] = static_cast<std::uint8_t>(target & 0xff);
    }
}

// Functions

void ESGenerator::generateFunction(ESFunctionNode* function)
{
    m_pass = 1;
    generateBody(function);
    m_pass = 2;
    if (!function->code->needFrame && !function->code->needArgs)
        return;
    // The addresses were those of variables on the stack.
    reset(function->body);
    function->code->bytes.clear();
    function->code->lines.clear();
    generateBody(function);
}

void ESGenerator::generateBody(ESFunctionNode* function)
{
    m_function = function;
    m_code = function->code;
    m_line = function->line;
    m_enclosing.clear();
    m_withDepth = 0;
    if (m_code->needArgs) {
        write(Op::ARGUMENTS);
        genput(ESStringPool::intern(u"arguments"_s));
    }
    genstmt(function->body);
    write(Op::RETU);
    m_function = nullptr;
}

void ESGenerator::generateMain(ESCode* code, ESNode* program)
{
    m_code = code;
    m_line = 1;
    for (std::size_t i = 0; i + 1 < program->list.size(); ++i)
        genstmt(program->list[i]);
    ESNode* last = program->list.empty() ? nullptr : program->list.back();
    if (last && last->kind == ESToken::ExpressionStatement) {
        genexp(last->child[0]);
    } else {
        if (last)
            genstmt(last);
        write(Op::UNDEFINED);
    }
    write(Op::RET);
}

void ESGenerator::reset(ESNode* node)
{
    if (!node || node->kind == ESToken::FunctionExpression)
        return;
    node->breakChain = ESNode::EmptyChain;
    node->continueChain = ESNode::EmptyChain;
    for (ESNode* child : node->child)
        reset(child);
    for (ESNode* child : node->list)
        reset(child);
}

// Variables

/// The variables of this function and of those around it can be seen by name.
void ESGenerator::useFrames()
{
    for (ESFunctionNode* at = m_function; at; at = at->enclosing)
        at->code->needFrame = true;
}

ESGenerator::Location ESGenerator::resolve(ESString* name)
{
    if (m_pass == 1 && m_function && name->text == u"arguments") {
        useFrames();
        m_code->needArgs = true;
        m_parser->codevar(m_function, name, ESProperty::DontEnum);
    }
    if (m_withDepth > 0) {
        useFrames();
        return {Location::Dynamic, 0};
    }
    const auto find = [&](const ESFunctionNode* function) -> Location {
        int index = 0;
        for (const ESProperty& variable : function->code->variables) {
            if (variable.name == name) {
                const bool parameter = variable.flags & ESProperty::Parameter;
                return {parameter ? Location::Argument : Location::Local,
                        parameter ? index : index - function->code->parameterCount};
            }
            ++index;
        }
        return {Location::Global, -1};
    };
    for (ESFunctionNode* at = m_function; at; at = at->enclosing) {
        const Location found = find(at);
        if (found.index < 0 && !at->insideWith)
            continue;
        if (at == m_function && found.index >= 0)
            return found;
        useFrames();
        return {Location::Dynamic, 0};
    }
    return {Location::Global, m_context->globalSlot(name, 0)};
}

namespace {

const VariableOpcodes& opcodesOf(int kind, bool framed)
{
    constexpr int Global = 0;
    constexpr int Argument = 1;
    if (kind == Global)
        return GlobalOpcodes;
    if (kind == Argument)
        return framed ? FramedArgumentOpcodes : ArgumentOpcodes;
    return framed ? FramedLocalOpcodes : LocalOpcodes;
}

} // namespace

void ESGenerator::genget(ESString* name)
{
    const Location at = resolve(name);
    if (at.kind == Location::Dynamic)
        write(Op::GETW, ESStringPool::indexOf(name));
    else
        write(opcodesOf(at.kind, m_code->needFrame).get, at.index);
}

void ESGenerator::genput(ESString* name)
{
    const Location at = resolve(name);
    if (at.kind == Location::Dynamic)
        write(Op::PUTW, ESStringPool::indexOf(name));
    else
        write(opcodesOf(at.kind, m_code->needFrame).put, at.index);
}

/// ++ and -- before and behind a target.
void ESGenerator::genstep(ESNode* target, bool increment, bool prefix, bool wanted)
{
    if (target->kind == ESToken::Identifier) {
        const Location at = resolve(target->name);
        if (at.kind != Location::Dynamic) {
            const VariableOpcodes& opcodes = opcodesOf(at.kind, m_code->needFrame);
            if (wanted && !prefix)
                write(opcodes.get, at.index);
            write(increment ? opcodes.increment : opcodes.decrement, at.index);
            if (wanted && prefix)
                write(opcodes.get, at.index);
            return;
        }
        write(Op::STR, ESStringPool::indexOf(target->name));
        write(increment ? (prefix ? Op::PREINCX : Op::POSTINCX)
                        : (prefix ? Op::PREDECX : Op::POSTDECX));
    } else {
        genexp(target->child[0]);
        if (target->kind == ESToken::Member)
            write(Op::STR, ESStringPool::indexOf(target->name));
        else
            genexp(target->child[1]);
        write(increment ? (prefix ? Op::PREINCE : Op::POSTINCE)
                        : (prefix ? Op::PREDECE : Op::POSTDECE));
    }
    if (!wanted)
        write(Op::DROP);
}

// Statements

void ESGenerator::genstmt(ESNode* node)
{
    if (!node)
        return;
    m_line = node->line;
    switch (node->kind) {
    case ESToken::Block:
        for (ESNode* statement : node->list)
            genstmt(statement);
        return;
    case ESToken::Var:
    case ESToken::ExpressionStatement: genexp(node->child[0], false); return;
    case ESToken::If: {
        genexp(node->child[0]);
        const int toElse = writeJump(Op::JF);
        genstmt(node->child[1]);
        if (!node->child[2]) {
            patchHere(toElse);
            return;
        }
        const int toEnd = writeJump(Op::J);
        patchHere(toElse);
        genstmt(node->child[2]);
        patchHere(toEnd);
        return;
    }
    case ESToken::While:
    case ESToken::Do:
    case ESToken::For: genloop(node); return;
    case ESToken::ForIn: genForIn(node); return;
    case ESToken::Switch: genSwitch(node); return;
    case ESToken::With:
        genexp(node->child[0]);
        write(Op::WITH);
        ++m_withDepth;
        m_enclosing.push_back({node, Enclosing::LeavesWith});
        genstmt(node->child[1]);
        m_enclosing.pop_back();
        --m_withDepth;
        write(Op::ENDWITH);
        return;
    case ESToken::Label:
        m_enclosing.push_back({node});
        genstmt(node->child[0]);
        m_enclosing.pop_back();
        patchHere(node->breakChain);
        return;
    case ESToken::Break:
    case ESToken::Continue: genJump(node); return;
    case ESToken::Return: genReturn(node); return;
    case ESToken::Throw:
        genexp(node->child[0]);
        write(Op::THROW);
        return;
    case ESToken::TryStatement: genTry(node); return;
    default: return;
    }
}

void ESGenerator::genloop(ESNode* node)
{
    m_enclosing.push_back({node});
    if (node->kind == ESToken::While) {
        const int top = here();
        const int out = gencond(node->child[0], false, ESNode::EmptyChain);
        genstmt(node->child[1]);
        patch(node->continueChain, top);
        patch(writeJump(Op::J), top);
        patchHere(out);
    } else if (node->kind == ESToken::Do) {
        const int top = here();
        genstmt(node->child[1]);
        patchHere(node->continueChain);
        patch(gencond(node->child[0], true, ESNode::EmptyChain), top);
    } else {
        if (node->child[0])
            genexp(node->child[0], false);
        const int toTest = writeJump(Op::J);
        const int body = here();
        genstmt(node->child[3]);
        patchHere(node->continueChain);
        if (node->child[2])
            genexp(node->child[2], false);
        patchHere(toTest);
        patch(gencond(node->child[1], true, ESNode::EmptyChain), body);
    }
    m_enclosing.pop_back();
    patchHere(node->breakChain);
}

void ESGenerator::genForIn(ESNode* node)
{
    m_enclosing.push_back({node});
    if (node->child[3])
        genexp(node->child[3], false);
    genexp(node->child[1]);
    write(Op::ENUM);
    genput(node->name);
    const int toTest = writeJump(Op::J);
    const int loop = here();
    // The current name is loaded; it goes into the target as an assigned value would.
    ESNode* target = node->child[0];
    if (target->kind == ESToken::Identifier) {
        genput(target->name);
    } else {
        genexp(target->child[0]);
        if (target->kind == ESToken::Member) {
            write(Op::PUTF, ESStringPool::indexOf(target->name));
        } else {
            genexp(target->child[1]);
            write(Op::PUTX);
        }
    }
    genstmt(node->child[2]);
    patchHere(node->continueChain);
    patchHere(toTest);
    genget(node->name);
    write(Op::NEXT, loop);
    m_enclosing.pop_back();
    patchHere(node->breakChain);
}

void ESGenerator::genSwitch(ESNode* node)
{
    genexp(node->child[0]);
    std::vector<int> toBody(node->list.size(), ESNode::EmptyChain);
    std::size_t defaultClause = node->list.size();
    for (std::size_t i = 0; i < node->list.size(); ++i) {
        ESNode* value = node->list[i]->child[0];
        if (!value) {
            defaultClause = i;
            continue;
        }
        write(Op::DUP);
        genexp(value);
        write(Op::IDENTITY);
        toBody[i] = writeJump(Op::JT_DROP);
    }
    write(Op::DROP);
    const int otherwise = writeJump(Op::J);
    m_enclosing.push_back({node});
    for (std::size_t i = 0; i < node->list.size(); ++i) {
        patchHere(toBody[i]);
        if (i == defaultClause)
            patchHere(otherwise);
        genstmt(node->list[i]->child[1]);
    }
    m_enclosing.pop_back();
    if (defaultClause == node->list.size())
        patchHere(otherwise);
    patchHere(node->breakChain);
}

/// A finally block is generated at each place where its statement is left.
void ESGenerator::genFinally(ESNode* block)
{
    reset(block);
    genstmt(block);
}

void ESGenerator::genTry(ESNode* node)
{
    ESNode* const variable = node->child[1];
    ESNode* const finallyBlock = node->child[3];
    int toFinally = ESNode::EmptyChain;
    if (finallyBlock) {
        toFinally = writeJump(Op::TRY);
        m_enclosing.push_back({node, Enclosing::LeavesTry, finallyBlock});
    }
    if (variable) {
        const int toCatch = writeJump(Op::TRY);
        m_enclosing.push_back({node, Enclosing::LeavesTry});
        genstmt(node->child[0]);
        m_enclosing.pop_back();
        write(Op::ENDTRY);
        const int toEnd = writeJump(Op::J);
        patchHere(toCatch);
        genput(variable->name);
        genstmt(node->child[2]);
        patchHere(toEnd);
    } else {
        genstmt(node->child[0]);
    }
    if (!finallyBlock)
        return;
    m_enclosing.pop_back();
    write(Op::ENDTRY);
    genFinally(finallyBlock);
    const int toEnd = writeJump(Op::J);
    patchHere(toFinally);
    genFinally(finallyBlock);
    write(Op::THROW);
    patchHere(toEnd);
}

/// Leaves the enclosing statements from the innermost to that depth.
void ESGenerator::leaveEnclosing(std::size_t depth)
{
    // A finally block is outside its own statement.
    std::vector<Enclosing> left;
    const int withDepth = m_withDepth;
    while (m_enclosing.size() > depth) {
        const Enclosing at = m_enclosing.back();
        left.push_back(at);
        m_enclosing.pop_back();
        if (at.exit == Enclosing::LeavesWith) {
            write(Op::ENDWITH);
            --m_withDepth;
        } else if (at.exit == Enclosing::LeavesTry) {
            write(Op::ENDTRY);
            if (at.finallyBlock)
                genFinally(at.finallyBlock);
        }
    }
    m_enclosing.insert(m_enclosing.end(), left.rbegin(), left.rend());
    m_withDepth = withDepth;
}

ESNode* ESGenerator::jumpTarget(ESNode* node, std::size_t& depth)
{
    const bool isBreak = node->kind == ESToken::Break;
    if (!node->name) {
        for (depth = m_enclosing.size(); depth > 0; --depth) {
            ESNode* at = m_enclosing[depth - 1].node;
            if (m_enclosing[depth - 1].exit == Enclosing::None
                && (isLoop(at) || (isBreak && at->kind == ESToken::Switch)))
                return at;
        }
        throw ESSyntaxError{(isBreak ? u"'break'"_s : u"'continue'"_s)
                                + u" not in a 'for' or 'while' loop"_s,
                            node->line};
    }
    for (depth = m_enclosing.size(); depth > 0; --depth) {
        ESNode* label = m_enclosing[depth - 1].node;
        if (label->kind != ESToken::Label || label->name != node->name)
            continue;
        if (isBreak)
            return label;
        // Labels of one loop may stand in a row.
        ESNode* loop = label->child[0];
        while (loop->kind == ESToken::Label) {
            loop = loop->child[0];
            ++depth;
        }
        if (!isLoop(loop))
            throw ESSyntaxError{u"labeled 'continue' doesn't mark a loop"_s, node->line};
        ++depth;
        return loop;
    }
    throw ESSyntaxError{u"can't find label "_s + node->name->text, node->line};
}

void ESGenerator::genJump(ESNode* node)
{
    std::size_t depth = 0;
    ESNode* target = jumpTarget(node, depth);
    leaveEnclosing(depth);
    int& chain = node->kind == ESToken::Break ? target->breakChain : target->continueChain;
    chain = writeJump(Op::J, chain);
}

void ESGenerator::genReturn(ESNode* node)
{
    if (node->child[0])
        genexp(node->child[0]);
    leaveEnclosing(0);
    write(node->child[0] ? Op::RET : Op::RETU);
}

/// Jumps when the test is as wanted; an empty test is true.
int ESGenerator::gencond(ESNode* test, bool sense, int chain)
{
    if (!test)
        return sense ? writeJump(Op::J, chain) : chain;
    if (sense && test->kind == '<') {
        genexp(test->child[0]);
        genexp(test->child[1]);
        return writeJump(Op::JLT, chain);
    }
    genexp(test);
    return writeJump(sense ? Op::JT : Op::JF, chain);
}

// Expressions

bool ESGenerator::sideEffectFree(const ESNode* node)
{
    if (!node)
        return true;
    switch (node->kind) {
    case '=':
    case ESToken::PlusPlus:
    case ESToken::MinusMinus:
    case ESToken::PostIncrement:
    case ESToken::PostDecrement:
    case ESToken::Delete:
    case ESToken::Call:
    case ESToken::New:
    case ESToken::NewWithArguments:
    case ESToken::VarDeclaration: return false;
    default: break;
    }
    if (compoundOperator(node->kind))
        return false;
    for (const ESNode* child : node->child)
        if (!sideEffectFree(child))
            return false;
    for (const ESNode* child : node->list)
        if (!sideEffectFree(child))
            return false;
    return true;
}

void ESGenerator::genexp(ESNode* node, bool wanted)
{
    if (!wanted && sideEffectFree(node))
        return;
    m_line = node->line;
    switch (node->kind) {
    case ESToken::VarDeclaration:
        if (node->child[1]) {
            genexp(node->child[1]);
            if (wanted)
                write(Op::DUP);
            genput(node->child[0]->name);
        } else if (wanted) {
            write(Op::UNDEFINED);
        }
        return;
    case ESToken::Comma:
        genexp(node->child[0], false);
        genexp(node->child[1], wanted);
        return;
    case ESToken::PlusPlus:
    case ESToken::MinusMinus:
        genstep(node->child[0], node->kind == ESToken::PlusPlus, true, wanted);
        return;
    case ESToken::PostIncrement:
    case ESToken::PostDecrement:
        genstep(node->child[0], node->kind == ESToken::PostIncrement, false, wanted);
        return;
    default: break;
    }
    if (node->kind == '=' || compoundOperator(node->kind)) {
        genassign(node, wanted);
        return;
    }
    genvalue(node);
    if (!wanted)
        write(Op::DROP);
}

void ESGenerator::genassign(ESNode* node, bool wanted)
{
    ESNode* const target = node->child[0];
    const BinaryOperator* compound = compoundOperator(node->kind);
    if (target->kind == ESToken::Identifier) {
        if (compound)
            genget(target->name);
        genexp(node->child[1]);
        if (compound)
            write(compound->opcode);
        if (wanted)
            write(Op::DUP);
        genput(target->name);
        return;
    }
    genexp(node->child[1]);
    if (wanted && !compound)
        write(Op::DUP);
    genexp(target->child[0]);
    if (target->kind == ESToken::Element)
        genexp(target->child[1]);
    else if (compound)
        write(Op::STR, ESStringPool::indexOf(target->name));
    if (compound) {
        write(static_cast<Op>(static_cast<int>(compound->opcode) + 1));
        if (!wanted)
            write(Op::DROP);
    } else if (target->kind == ESToken::Member) {
        write(Op::PUTF, ESStringPool::indexOf(target->name));
    } else {
        write(Op::PUTX);
    }
}

void ESGenerator::genconstant(double number)
{
    constexpr Op Small[] = {Op::NUM_0, Op::NUM_1, Op::NUM_2, Op::NUM_3, Op::NUM_4};
    for (int i = 0; i < int(std::size(Small)); ++i)
        if (number == i && !std::signbit(number)) {
            write(Small[i]);
            return;
        }
    if (number == -1)
        write(Op::NUM_M1);
    else
        write(Op::NUM, m_code->number(number));
}

void ESGenerator::gencall(ESNode* node)
{
    for (ESNode* argument : node->list)
        genexp(argument);
    const int count = int(node->list.size());
    ESNode* const callee = node->child[0];
    m_line = node->line;
    switch (callee->kind) {
    case ESToken::Identifier: {
        const Location at = resolve(callee->name);
        if (at.kind == Location::Dynamic)
            write(Op::CALLW, ESStringPool::indexOf(callee->name), count);
        else
            write(opcodesOf(at.kind, m_code->needFrame).call, at.index, count);
        return;
    }
    case ESToken::Member:
        genexp(callee->child[0]);
        write(Op::CALLF, ESStringPool::indexOf(callee->name), count);
        return;
    case ESToken::Element:
        genexp(callee->child[0]);
        genexp(callee->child[1]);
        write(Op::CALLX, count);
        return;
    default: genexp(callee); write(Op::CALLV, count);
    }
}

void ESGenerator::gendelete(ESNode* target)
{
    if (target->kind == ESToken::Identifier) {
        if (resolve(target->name).kind == Location::Dynamic)
            write(Op::DELETEW, ESStringPool::indexOf(target->name));
        else
            write(Op::FALSE_);
        return;
    }
    genexp(target->child[0]);
    if (target->kind == ESToken::Member)
        write(Op::STR, ESStringPool::indexOf(target->name));
    else
        genexp(target->child[1]);
    write(Op::DELETEX);
}

/// An expression whose value is wanted and that isn't an assignment.
void ESGenerator::genvalue(ESNode* node)
{
    struct UnaryOperator {
        int token;
        Op opcode;
    };
    static constexpr UnaryOperator UnaryOperators[] = {
        {ESToken::Void, Op::VOID_}, {ESToken::Typeof, Op::TYPEOF}, {'~', Op::BITNOT},
        {'!', Op::LOGNOT},          {ESToken::Plus, Op::POS},      {ESToken::Minus, Op::NEG}};

    for (const UnaryOperator& row : UnaryOperators)
        if (row.token == node->kind) {
            genexp(node->child[0]);
            write(row.opcode);
            return;
        }
    if (const BinaryOperator* binary = binaryOperator(node->kind)) {
        genexp(node->child[0]);
        genexp(node->child[1]);
        write(binary->opcode);
        return;
    }
    switch (node->kind) {
    case '>':
    case ESToken::GreaterEqual:
        genexp(node->child[1]);
        genexp(node->child[0]);
        write(node->kind == '>' ? Op::LT : Op::LE);
        return;
    case ESToken::AndAnd:
    case ESToken::OrOr: {
        genexp(node->child[0]);
        const int toEnd = writeJump(node->kind == ESToken::AndAnd ? Op::LOGAND : Op::LOGOR);
        genexp(node->child[1]);
        patchHere(toEnd);
        return;
    }
    case ESToken::Conditional: {
        genexp(node->child[0]);
        const int toElse = writeJump(Op::JF);
        genexp(node->child[1]);
        const int toEnd = writeJump(Op::J);
        patchHere(toElse);
        genexp(node->child[2]);
        patchHere(toEnd);
        return;
    }
    case ESToken::Number: genconstant(node->number); return;
    case ESToken::String: write(Op::STR, ESStringPool::indexOf(node->name)); return;
    case ESToken::Identifier: genget(node->name); return;
    case ESToken::This: write(Op::THIS); return;
    case ESToken::True: write(Op::TRUE_); return;
    case ESToken::False: write(Op::FALSE_); return;
    case ESToken::Null: write(Op::NULL_); return;
    case ESToken::Member:
        genexp(node->child[0]);
        write(Op::GETF, ESStringPool::indexOf(node->name));
        return;
    case ESToken::Element:
        genexp(node->child[0]);
        genexp(node->child[1]);
        write(Op::GETX);
        return;
    case ESToken::Call: gencall(node); return;
    case ESToken::New:
        genexp(node->child[0]);
        write(Op::NEW);
        return;
    case ESToken::NewWithArguments:
        for (ESNode* argument : node->list)
            genexp(argument);
        genexp(node->child[0]);
        write(Op::NEWA, int(node->list.size()));
        return;
    case ESToken::ArrayLiteral:
        for (ESNode* element : node->list) {
            if (element)
                genexp(element);
            else
                write(Op::UNDEFINED);
        }
        write(Op::MKARRAY, int(node->list.size()));
        return;
    case ESToken::ObjectLiteral:
        write(Op::NEWOBJ);
        for (ESNode* pair : node->list) {
            genexp(pair->child[0]);
            write(Op::INITF, ESStringPool::indexOf(pair->name));
        }
        return;
    case ESToken::FunctionExpression: write(Op::CLOSURE, node->function); return;
    case ESToken::Delete: gendelete(node->child[0]); return;
    default: write(Op::UNDEFINED);
    }
}
