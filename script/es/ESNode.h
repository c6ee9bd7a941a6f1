#pragma once

#include <memory>
#include <vector>

class ESCode;
struct ESString;

/// A node of the tree of a program. Its kind is a token; what its children are depends on it.
struct ESNode {
    static constexpr int EmptyChain = 0xffff;

    explicit ESNode(int kind, int line) : kind(kind), line(line) { }

    int kind;
    int line;
    double number = 0;
    ESString* name = nullptr;
    int function = -1; ///< index of a function's code
    ESNode* child[4] = {};
    /// Statements of a block, arguments, elements, clauses.
    std::vector<ESNode*> list;
    /// Unresolved jumps of break and continue: the offset of the last operand, linked backwards.
    int breakChain = EmptyChain;
    int continueChain = EmptyChain;
    /// Of the tree below, so that walking it can't exhaust the stack.
    int height = 0;
};

/// A function being compiled.
struct ESFunctionNode {
    ESFunctionNode* enclosing = nullptr;
    ESCode* code = nullptr;
    ESNode* body = nullptr;
    int line = 0;
    /// Whether an object of a `with` may lie between its variables and those around it.
    bool insideWith = false;
};
