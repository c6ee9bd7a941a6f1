#pragma once

#include "objfile/model/TOBFModule.h"
#include "toolchain/kas/AsmLine.h"

#include <map>
#include <unordered_map>
#include <vector>

class TOBFExpr;
class TOBFMarker;

/// The symbols of one source file. A name that is used and never defined is external. Names that
/// begin with ".L" and numbers are labels that leave no symbol behind.
class AsmSymbols {
public:
    explicit AsmSymbols(TOBFModule* module) : m_module(module) { }

    /// The expression that a use of the name stands for.
    TOBFExpr* reference(const std::string& name, const SourceLocation& where);
    /// `1f` and `1b`. Throws AsmError if there is no such label in front.
    TOBFExpr* numbered(std::int64_t number, bool forward, const SourceLocation& where);

    /// Makes a label. Throws AsmError if the name is taken. Returns the marker, which the caller
    /// places; `locus` is the symbol's place for the debugger, or null.
    TOBFMarker* defineLabel(const std::string& name, const SourceLocation& where, TOBFLocus* locus);
    TOBFMarker* defineNumbered(std::int64_t number);
    /// Gives the name a value, or another one. Throws AsmError if it is a label.
    void equate(const std::string& name, TOBFExpr* value, const SourceLocation& where);

    void makeGlobal(const std::string& name) { entry(name).global = true; }
    void makeWeak(const std::string& name) { entry(name).global = entry(name).weak = true; }
    void makeFunction(const std::string& name) { entry(name).function = true; }

    bool isGlobal(const std::string& name) const;
    bool isDefined(const std::string& name) const;

    /// Enters everything in the module and reports the labels that were used and never defined.
    void finish(Diagnostics& diagnostics);

private:
    enum class State { Unknown, Label, Equate };
    struct Entry {
        State state = State::Unknown;
        TOBFSymbol* symbol =
            nullptr; ///< null until used or defined, and for a label of the file only
        TOBFMarker* marker = nullptr;
        TOBFExpr* value = nullptr; ///< of an equate
        bool global = false;
        bool weak = false;
        bool function = false;
        SourceLocation where; ///< of the definition or the first use
    };
    struct Pending {
        TOBFMarker* marker;
        SourceLocation where;
    };

    Entry& entry(const std::string& name);
    TOBFSymbol* symbolOf(const std::string& name, Entry& entry);
    void enter(const std::string& name, Entry& entry, std::string& weakNames);

    TOBFModule* m_module;
    std::unordered_map<std::string, Entry> m_entries;
    std::vector<std::string> m_order;
    std::map<std::int64_t, TOBFMarker*> m_lastNumbered;
    std::map<std::int64_t, Pending> m_nextNumbered;
};
