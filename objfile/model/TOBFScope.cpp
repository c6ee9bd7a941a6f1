#include "objfile/model/TOBFScope.h"

#include "objfile/model/RecursionLimit.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFSymbol.h"

void TOBFScope::setScope(TOBFScope* parent)
{
    m_scope = parent;
    if (parent != nullptr)
        parent->m_children.push_back(this);
}

void TOBFScope::enter(TOBFObject* object)
{
    if (object->kind() == TOBFKind::Symbol)
        m_symbols[object->getName()] = static_cast<TOBFSymbol*>(object);
}

void TOBFScope::remove(TOBFSymbol* symbol)
{
    const auto it = m_symbols.find(symbol->getName());
    if (it != m_symbols.end() && it->second == symbol)
        m_symbols.erase(it);
}

void TOBFScope::markReachable(bool reachable)
{
    if (!mark(reachable))
        return;
    const RecursionLimit depth;
    depth.check();
    if (m_scope != nullptr)
        m_scope->markReachable(reachable);
    if (m_start != nullptr)
        m_start->markReachable(reachable);
    if (m_end != nullptr)
        m_end->markReachable(reachable);
    if (m_scopeKind == TAG_SCOPE_FUNCTION)
        for (TOBFScope* child : m_children)
            child->markReachable(reachable);
}
