#pragma once

#include "objfile/model/TOBFModule.h"
#include "toolchain/common/Diagnostics.h"

#include <deque>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

class Archive2;

/// A module that takes part in the link.
struct LinkModule {
    std::string name; ///< the file, or "library(member)"
    TOBFModule* module = nullptr;
    std::set<HString*> weak; ///< symbols that another definition may replace
};

/// The modules of the link, which it owns, and the public symbols that they define. Members of
/// libraries come in when a symbol that only they define is asked for.
class LinkInputs {
public:
    explicit LinkInputs(Diagnostics& diagnostics);
    ~LinkInputs();
    LinkInputs(const LinkInputs&) = delete;
    LinkInputs& operator=(const LinkInputs&) = delete;

    /// Adds an object file, or a library whose members are read when needed. Throws HException.
    void add(const std::string& path);

    /// Defines a symbol; a definition that is there already stays.
    void define(TOBFSymbol* symbol) { m_definitions.emplace(symbol->name(), Definition{symbol}); }

    /// The definition of a name that is known so far, or null.
    TOBFSymbol* find(HString* name) const;
    /// The same, after bringing in the library member that defines it.
    TOBFSymbol* resolve(HString* name);

    /// In the order in which they came in. Grows while symbols are resolved.
    const std::deque<LinkModule>& modules() const { return m_modules; }
    /// Where the symbol stands, for messages.
    std::string moduleNameOf(const TOBFSymbol* symbol) const;

    /// Called for each module when it comes in.
    std::function<void(LinkModule&)> onModule;

private:
    struct Definition {
        TOBFSymbol* symbol = nullptr;
        const LinkModule* module = nullptr;
        bool weak = false;
        bool fromLibrary = false;
    };
    struct Library;

    void addModule(std::string name, const std::vector<unsigned char>& bytes, bool fromLibrary);
    void definePublics(LinkModule& module, bool fromLibrary);
    void redefine(Definition& old, const Definition& better);
    void addLibrary(const std::string& path);
    void indexMembers(Library& library);
    TOBFModule* read(const std::string& name, const std::vector<unsigned char>& bytes);

    Diagnostics& m_diagnostics;
    std::deque<LinkModule> m_modules;
    std::unordered_map<HString*, Definition> m_definitions;
    std::unordered_map<const TOBFSymbol*, const LinkModule*> m_owners;
    std::vector<std::unique_ptr<Library>> m_libraries;
    struct Member {
        Library* library;
        unsigned number;
    };
    std::unordered_map<HString*, Member> m_members;
};
