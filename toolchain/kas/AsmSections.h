#pragma once

#include "objfile/model/TOBFModule.h"
#include "toolchain/common/SectionNames.h"
#include "toolchain/kas/AsmLine.h"

#include <optional>
#include <unordered_map>

/// The sections that the assembler knows by their purpose.
enum class DefaultSection { Code, Data, Zeroed, Const, Vectors };

/// Appends items to sections and divides them into fragments, the units that the linker keeps or
/// drops whole. Code that can run into what follows is never divided.
class AsmSections {
public:
    /// What an item means for the division.
    enum class Flow {
        None, ///< a label or a source position
        Data,
        Code,
        Transfer, ///< an instruction that nothing behind it is reached from
    };

    AsmSections(TOBFModule* module, SectionNames names)
        : m_module(module),
          m_names(std::move(names))
    {
    }

    void select(DefaultSection section);
    /// Selects a section by name. The kind is that of the first selection; without one it is told
    /// by the name. Throws AsmError for a kind that differs, and for a new name that tells none.
    void select(const std::string& name, std::optional<SectionKind> kind);

    /// True for a name by which other assemblers know a section, such as ".text.main".
    static bool isConventional(const std::string& name);

    /// Appends the item; to the code section if none has been selected.
    void add(TOBFInsn* insn, Flow flow);
    /// A global label stands here: a new fragment begins if nothing runs into it.
    void beginUnit();
    /// True if the next byte's address is known to be odd.
    bool atOddAddress() const;

    TOBFSection* current() const { return m_current != nullptr ? m_current->section : nullptr; }
    bool inCode() const;

    void beginLinkIf(TOBFExpr* condition, const SourceLocation& where);
    void endLinkIf();
    /// Reports what is still open.
    void finish(Diagnostics& diagnostics);

    /// Counts fragments, so that a caller can tell when another has begun.
    std::size_t fragmentNumber() const { return m_fragments; }

private:
    enum class Parity { Even, Odd, Unknown };
    enum class Last { Nothing, Data, Code, Transfer };
    struct Section {
        TOBFSection* section = nullptr;
        Parity parity = Parity::Even;
        Last last = Last::Nothing;
        int alignment = 0;  ///< of an alignment that nothing has followed yet
        bool begun = false; ///< has a fragment to go on with
        bool fixed = false; ///< what follows counts from an origin, so it stays together
        std::vector<SourceLocation> openLinkIfs;
    };

    Section& required();
    Section& open(const std::string& name, unsigned flags);
    bool dividable(const Section& section) const;
    void beginFragment(Section& section);
    void beginAtOrigin(Section& section);
    void follow(Section& section, TOBFInsn* insn);

    TOBFModule* m_module;
    SectionNames m_names;
    std::unordered_map<std::string, Section> m_sections;
    Section* m_current = nullptr;
    std::size_t m_fragments = 0;
};
