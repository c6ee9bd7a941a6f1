#pragma once

#include "objfile/model/TOBFObject.h"

#include <list>
#include <map>

class TOBFExpr;
class TOBFSymbol;

/// A lexical scope: a module, a function or a block, with the symbols declared in it.
class TOBFScope : public TOBFObject {
public:
    using Symbols = std::map<HString*, TOBFSymbol*>;

    /// `scopeKind` is TAG_SCOPE_MODULE, TAG_SCOPE_FUNCTION or TAG_SCOPE_BLOCK.
    explicit TOBFScope(int scopeKind) : TOBFScope(TOBFKind::Scope, scopeKind)
    {
        finalizeWithPool(this);
    }

    int scopeKind() const { return m_scopeKind; }
    /// Stores the parent and appends this scope to its children.
    void setScope(TOBFScope* parent) override;
    void markReachable(bool reachable) override;
    virtual void externalize(TOBFWriter* writer);

    /// Puts a symbol in the map under its name, in place of one of that name. Other objects are not
    /// held by scopes.
    void enter(TOBFObject* object);
    void remove(TOBFSymbol* symbol);

    const Symbols& symbols() const { return m_symbols; }
    std::list<TOBFScope*>& children() { return m_children; }
    const std::list<TOBFScope*>& children() const { return m_children; }

    /// Marker expressions, or null: the first address and the one behind the last.
    TOBFExpr* start() const { return m_start; }
    TOBFExpr* end() const { return m_end; }
    void setRange(TOBFExpr* start, TOBFExpr* end)
    {
        m_start = start;
        m_end = end;
    }

    /// The symbol of the function that this scope is the body of, else null.
    TOBFSymbol* functionSymbol() const { return m_functionSymbol; }
    void setFunctionSymbol(TOBFSymbol* symbol) { m_functionSymbol = symbol; }

protected:
    TOBFScope(TOBFKind kind, int scopeKind) : TOBFObject(kind) { m_scopeKind = scopeKind; }

    void externalizeScope(TOBFWriter* writer);

    Symbols m_symbols;
    std::list<TOBFScope*> m_children;
    TOBFExpr* m_start = nullptr;
    TOBFExpr* m_end = nullptr;
    TOBFSymbol* m_functionSymbol = nullptr;
};
