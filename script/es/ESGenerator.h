#pragma once

#include "script/es/ESCode.h"
#include "script/es/ESNode.h"
#include "script/es/ESVmOpcode.h"

#include <vector>

class ESContext;
class ESParser;

/// Writes the code of a tree. Throws ESSyntaxError for a jump without a target, ESFatalError for
/// code that is too large.
class ESGenerator {
public:
    ESGenerator(ESContext* context, ESParser* parser) : m_context(context), m_parser(parser) { }

    /// A body is generated twice when the first time shows that its variables live in a frame.
    void generateFunction(ESFunctionNode* function);
    /// The main program: its result is the value of its last statement.
    void generateMain(ESCode* code, ESNode* program);

private:
    /// Where a variable is.
    struct Location {
        enum Kind { Global, Argument, Local, Dynamic } kind;
        int index;
    };
    /// A statement that encloses the one being generated.
    struct Enclosing {
        ESNode* node;
        /// What a jump out of it, or a return, runs first: nothing, ENDWITH, or ENDTRY and a
        /// finally block.
        enum Exit { None, LeavesWith, LeavesTry } exit = None;
        ESNode* finallyBlock = nullptr;
    };

    void write(ESVmOpcode opcode) { addByte(static_cast<std::uint8_t>(opcode)); }
    void write(ESVmOpcode opcode, int operand);
    void write(ESVmOpcode opcode, int operand, int second);
    void addByte(std::uint8_t byte);
    void addOperand(int operand);
    int here() const { return m_code->size(); }
    int writeJump(ESVmOpcode opcode, int chain = ESNode::EmptyChain);
    void patch(int chain, int target);
    void patchHere(int chain) { patch(chain, here()); }

    Location resolve(ESString* name);
    void useFrames();
    void genget(ESString* name);
    void genput(ESString* name);
    void genstep(ESNode* target, bool increment, bool prefix, bool wanted);

    void generateBody(ESFunctionNode* function);
    void reset(ESNode* node);
    void genstmt(ESNode* node);
    void genloop(ESNode* node);
    void genForIn(ESNode* node);
    void genSwitch(ESNode* node);
    void genTry(ESNode* node);
    void genFinally(ESNode* block);
    void genJump(ESNode* node);
    void genReturn(ESNode* node);
    ESNode* jumpTarget(ESNode* node, std::size_t& depth);
    void leaveEnclosing(std::size_t depth);

    void genexp(ESNode* node, bool wanted = true);
    void genvalue(ESNode* node);
    void genassign(ESNode* node, bool wanted);
    void gencall(ESNode* node);
    void genconstant(double number);
    void gendelete(ESNode* target);
    int gencond(ESNode* test, bool sense, int chain);
    static bool sideEffectFree(const ESNode* node);

    ESContext* m_context;
    ESParser* m_parser;
    ESCode* m_code = nullptr;
    ESFunctionNode* m_function = nullptr;
    std::vector<Enclosing> m_enclosing;
    int m_withDepth = 0;
    int m_pass = 2;
    int m_line = 0;
};
