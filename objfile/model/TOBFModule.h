#pragma once

#include "objfile/model/TOBFScope.h"
#include "objfile/model/TOBFSection.h"
#include "objfile/model/TOBFSymbol.h"

#include <list>
#include <map>
#include <set>

/// One object file, library member or executable: sections of items, symbols, scopes and types.
class TOBFModule final : public TOBFScope {
public:
    static constexpr int DefaultPriority = 10;

    /// Takes the pool that the module's objects are made in; it goes with the module.
    explicit TOBFModule(Pool* pool = nullptr)
        : TOBFScope(TOBFKind::Module, TAG_SCOPE_MODULE),
          m_pool(pool)
    {
        finalizeWithPool(this);
    }

    static constexpr int processorWordSize() { return 2; }
    static constexpr int processorAddressSize() { return 2; }
    static constexpr bool processorBigEndian() { return false; }
    static constexpr unsigned processorAddress(unsigned address) { return address & 0xFFFFF; }

    /// Whether any item came from a hidden record.
    bool hasHiddenInsns();

    void addSection(TOBFSection* section);
    /// The section of that name, or null.
    TOBFSection* findSection(HString* name) const;
    const std::map<HString*, TOBFSection*>& sectionMap() const { return m_sectionMap; }
    const std::list<TOBFSection*>& sections() const { return m_sections; }

    void addSymbol(TOBFSymbol* symbol) { m_allSymbols.push_back(symbol); }
    std::list<TOBFSymbol*>& allSymbols() { return m_allSymbols; }
    void addMarked(TOBFSymbol* symbol) { m_marked.push_back(symbol); }
    const std::list<TOBFSymbol*>& marked() const { return m_marked; }

    /// Enters a symbol in the public map under its name, in place of one of that name.
    void makePublic(TOBFSymbol* symbol) { m_public[symbol->getName()] = symbol; }
    void makePrivate(TOBFSymbol* symbol) { m_public.erase(symbol->getName()); }
    void makeExtern(TOBFSymbol*) { }
    const std::map<HString*, TOBFSymbol*>& publicSymbols() const { return m_public; }

    void addLibrary(HString* name) { m_libraries.insert(name); }
    const std::set<HString*>& libraries() const { return m_libraries; }
    void setAttribute(HString* key, HString* value) { m_attributes[key] = value; }
    /// The value of an attribute, or null.
    HString* attribute(HString* key) const;

    bool isProtected() const { return m_protected; }
    void setProtected() { m_protected = true; }
    int priority() const { return m_priority; }
    void setPriority(int priority) { m_priority = priority; }
    Pool* pool() const { return m_pool; }

    /// Gives each marker that defines a symbol that symbol's name, and the way back to it.
    void nameMarkers();

    void externalize(TOBFWriter* writer) override { externalize(writer, false); }
    /// Writes the module, once. With `hide` its items are marked as hidden first.
    void externalize(TOBFWriter* writer, bool hide);

private:
    void externalizeContents(TOBFWriter* writer);

    std::map<HString*, TOBFSection*> m_sectionMap;
    std::list<TOBFSection*> m_sections;
    std::map<HString*, TOBFSymbol*> m_public;
    std::list<TOBFSymbol*> m_allSymbols;
    std::set<HString*> m_libraries;
    std::map<HString*, HString*> m_attributes;
    bool m_protected = false;
    std::int32_t m_priority = DefaultPriority;
    std::list<TOBFSymbol*> m_marked;
    Pool* m_pool;
};
