#pragma once

#include "base/Path.h"
#include "objfile/query/SourceAddressMapping.h"

#include <cstdint>
#include <list>
#include <map>
#include <vector>

class HString;
class TOBFInsn;
class TOBFLocus;
class TOBFModule;
class TOBFScope;
class TOBFSection;
class TOBFSymbol;
class TOBFType;

/// The debugger's index of one executable: items by address, source positions by file and line,
/// symbols by value, types by name. Made once; the module must outlive it and stay as it is.
///
/// Addresses are byte addresses. A look-up that finds nothing gives null or false, and none throws.
/// Those by name try a name as it stands and then with "_" in front, as the compiler's linkage
/// names may have it. Finding scopes isn't reentrant.
class SymbolicDebug {
public:
    /// An item's place in its fragment's list.
    using Position = std::list<TOBFInsn*>::iterator;
    using Positions = std::vector<Position>;

    SymbolicDebug(TOBFModule* module, const Path& path);
    SymbolicDebug(const SymbolicDebug&) = delete;
    SymbolicDebug& operator=(const SymbolicDebug&) = delete;

    TOBFModule* module() const { return m_module; }
    const Path& path() const { return m_path; }
    const SourceAddressMapping& sourceAddressMapping() const { return m_mapping; }

    /// The item of a code section with exactly this address, or null.
    TOBFInsn* GetInsn(unsigned address) const;
    /// The place of the item whose bytes hold the address, or null.
    const Position* findItem(unsigned address) const;
    /// The first section, in map order, that holds the address. One without placed bytes counts
    /// from 0.
    TOBFSection* getSection(unsigned address) const;

    /// The symbol with this value or, unless `exact`, the nearest one below it.
    TOBFSymbol* findSymbol(int address, bool exact) const;
    /// The same, if it is defined in a section that isn't code.
    TOBFSymbol* findDataSymbol(int address, bool exact) const;
    /// The same, if it is defined in a code section.
    TOBFSymbol* findCodeSymbol(int address, bool exact) const;
    /// The same, if it has a function type. Absolute symbols aren't counted as near ones.
    TOBFSymbol* findFunctionSymbol(int address, bool exact) const;
    /// The symbol of the last label ahead of the item with this address, in the item's fragment.
    TOBFSymbol* findClosestSymbol(int address) const;

    /// The first source position at or above a file and line, in the order of `loci`. False if
    /// there is none; it may be one of another file.
    bool locate(HString* file, unsigned line, Positions::const_iterator& position) const;
    /// The source positions of the code, by file, line and address. Files are in the order of their
    /// names' records.
    const Positions& loci() const { return m_loci; }

    TOBFSymbol* findModuleSymbol(const QString& name) const;
    /// Among the public symbols.
    TOBFSymbol* findGlobalSymbol(const QString& name) const;
    /// The first symbol declared in this file and, unless `line` is 0, on this line.
    TOBFSymbol* findDeclaredSymbol(const QString& name, const QString& file, int line) const;
    /// The innermost scope that holds the address, or null.
    TOBFScope* findScope(int address) const;
    /// From the innermost scope at the address outward.
    TOBFSymbol* findScopedSymbol(const QString& name, int address) const;
    /// A structure type of some symbol; the keyword "struct" may stand in front of its name.
    TOBFType* findNamedType(const QString& name) const;

private:
    struct Value {
        std::int64_t value;
        TOBFSymbol* symbol;
        TOBFSection* section; ///< null for an absolute symbol
    };
    struct Span {
        std::int64_t start;
        std::int64_t end;
        TOBFScope* scope;
    };
    struct Declaration {
        HString* name;
        TOBFSymbol* symbol;
    };
    using Values = std::vector<Value>;

    void indexItems();
    void indexSymbols();
    void indexScopes();
    void addNamedType(TOBFType* type);
    template <typename Accept>
    TOBFSymbol* findValue(int address, bool exact, bool countsAbsolute, Accept accept) const;
    void findBestScopeMatch(int address) const;

    TOBFModule* m_module;
    Positions m_insns;
    std::vector<unsigned> m_addresses; ///< of the items, to search without touching them
    Positions m_loci;
    Path m_path;
    Values m_symbols;
    SourceAddressMapping m_mapping;
    std::map<HString*, TOBFType*> m_types;
    std::vector<Declaration> m_declarations; ///< by name, then in the module's order
    std::vector<Span> m_spans;               ///< a scope ahead of those in it

    // The last search for a scope.
    mutable int m_scopeAddress = -1;
    mutable TOBFScope* m_bestScope = nullptr;
    mutable std::int64_t m_bestStart = 0;
    mutable std::int64_t m_bestEnd = 0;
};
