#pragma once

#include "objfile/model/TOBFModule.h"
#include "toolchain/kld/LinkInputs.h"
#include "toolchain/kld/LinkerOptions.h"

#include <string>
#include <unordered_map>

class TOBFExpr;
class TOBFMarker;

/// The executable that is being put together: the reachable fragments in their sections, and what
/// the linker itself adds.
class LinkImage {
public:
    LinkImage(const LinkerOptions& options, LinkInputs& inputs, Diagnostics& diagnostics);

    /// Marks what the roots need, which brings in library members, and collects it.
    void collect();

    TOBFModule* module() const { return m_module; }
    const LinkerOptions& options() const { return m_options; }
    Diagnostics& diagnostics() const { return m_diagnostics; }
    /// The module that a fragment came from; null for what the linker made.
    const LinkModule* moduleOf(const TOBFFragment* fragment) const;
    /// What to call a fragment in messages: its first symbol and its module.
    std::string nameOf(TOBFFragment* fragment) const;

    /// A symbol whose value the linker gives, if the program refers to it; else null.
    TOBFSymbol* linkerSymbol(const std::string& name) const;
    /// The same, made if the program doesn't refer to it.
    TOBFSymbol* provideSymbol(const std::string& name);
    const std::unordered_map<HString*, TOBFSymbol*>& linkerSymbols() const
    {
        return m_linkerSymbols;
    }
    TOBFSymbol* findDefinition(const std::string& name) const
    {
        return m_inputs.find(HString::intern(name));
    }

    /// Appends a fragment of the linker's own to a section, made with these flags if it is new.
    TOBFFragment* addFragment(const std::string& section, unsigned flags);

    /// Fragments and bytes that nothing needed, for the map.
    unsigned droppedFragments() const { return m_droppedFragments; }

private:
    void defineSymbols();
    void markRoots();
    void markFixed(const LinkModule& module);
    TOBFSymbol* symbolNamed(const std::string& name);
    void bind(TOBFSymbol* symbol);
    void collectSymbols(const LinkModule& module);
    void collectSection(const LinkModule& module, TOBFSection* section);
    void collectScope(TOBFScope* scope);
    bool isCollected(TOBFExpr* definition) const;
    TOBFSection* sectionLike(TOBFSection* section, const LinkModule& module);
    void bindDirectly(TOBFExpr* expr) const;
    void tidyFragment(TOBFFragment* fragment) const;

    static LinkImage* s_binding; ///< whose symbols the running walk binds
    const LinkerOptions& m_options;
    LinkInputs& m_inputs;
    Diagnostics& m_diagnostics;
    TOBFModule* m_module;
    std::unordered_map<HString*, TOBFSymbol*> m_linkerSymbols;
    std::unordered_map<const TOBFFragment*, const LinkModule*> m_origins;
    unsigned m_droppedFragments = 0;
};
