#include "objfile/model/TOBFSymbol.h"

#include "objfile/model/RecursionLimit.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFScope.h"

void (*TOBFSymbol::resolve)(TOBFSymbol* symbol) = nullptr;

void TOBFSymbol::markReachable(bool reachable)
{
    if (!mark(reachable))
        return;
    const RecursionLimit depth;
    depth.check();
    if (reachable && resolve != nullptr)
        resolve(this);
    if (m_definition != nullptr)
        m_definition->markReachable(reachable);
    if (m_scope != nullptr)
        m_scope->markReachable(reachable);
}
