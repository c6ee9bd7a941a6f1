#include "toolchain/kld/LinkConditions.h"

#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFInsn.h"

namespace {

/// The expression with every symbol replaced by its value.
TOBFExpr* withValues(TOBFExpr* expr, const SymbolLookup& find)
{
    if (expr->kind() == TOBFKind::BinaryExpr) {
        auto* binary = static_cast<TOBFBinaryExpr*>(expr);
        TOBFExpr* right = binary->right() != nullptr ? withValues(binary->right(), find) : nullptr;
        return TOBFBinaryExpr::make(binary->operation(), withValues(binary->left(), find), right);
    }
    if (expr->kind() != TOBFKind::SymbolExpr)
        return expr;
    TOBFSymbol* symbol = static_cast<TOBFSymbolExpr*>(expr)->symbol();
    if (symbol->definition() == nullptr)
        symbol = find(symbol->name());
    if (symbol == nullptr)
        return new TOBFConstExpr(0);
    // What is there but has no value yet is true.
    const TOBFValue value = TOBFSymbolExpr(symbol).evaluate();
    return new TOBFConstExpr(value.failed ? 1 : value.value);
}

bool holds(TOBFExpr* condition, const SymbolLookup& find)
{
    const TOBFValue value = withValues(condition, find)->evaluate();
    return !value.failed && value.value != 0;
}

void resolve(TOBFFragment* fragment, const SymbolLookup& find)
{
    std::list<TOBFInsn*>& insns = fragment->insns();
    unsigned nesting = 0;  // of conditions that hold
    unsigned dropping = 0; // of conditions inside one that does not, it included
    for (auto it = insns.begin(); it != insns.end();) {
        const TOBFKind kind = (*it)->kind();
        bool drop = dropping > 0;
        if (kind == TOBFKind::LinkIf) {
            if (dropping > 0 || !holds((*it)->operand(0), find))
                ++dropping;
            else
                ++nesting;
            drop = true;
        } else if (kind == TOBFKind::EndLinkIf) {
            if (dropping > 0)
                --dropping;
            else if (nesting > 0)
                --nesting;
            drop = true;
        }
        it = drop ? insns.erase(it) : std::next(it);
    }
}

} // namespace

void resolveLinkConditions(TOBFModule* module, const SymbolLookup& find)
{
    for (TOBFSection* section : module->sections())
        for (TOBFFragment* fragment : section->fragments())
            resolve(fragment, find);
}
