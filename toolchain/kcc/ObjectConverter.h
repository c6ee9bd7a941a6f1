#pragma once

#include "objfile/model/TOBFModule.h"
#include "toolchain/common/SectionNames.h"
#include "toolchain/kcc/CodeDecoder.h"
#include "toolchain/kcc/ElfObject.h"

#include <map>
#include <string>
#include <vector>

class TOBFFilename;
class TOBFInsn;
class TOBFMarker;

/// Turns an object file of the compiler into a module of the object model. Each of its sections
/// becomes a fragment. Every address is kept as a symbol or a label, so that nothing is bound to
/// where the compiler happened to put it.
class ObjectConverter {
public:
    ObjectConverter(const ElfObject& elf, const SectionNames& names, TOBFModule* module);

    /// Converts code and data, and the debugging information if there is any and it is wanted.
    void convert(bool withDebugInformation);

    // What the conversion of the debugging information builds on.

    const ElfObject& elf() const { return m_elf; }
    TOBFModule* module() const { return m_module; }
    /// The address of a place, as a symbol or label with an addend; a constant for no section.
    TOBFExpr* address(const ElfPlace& place);
    /// A label in code; it takes its place when the section is written out.
    TOBFExpr* codeLabel(const ElfPlace& place);
    /// The symbol that the compiler defined there, or null.
    TOBFSymbol* symbolAt(const ElfPlace& place) const;
    /// Null for a section without code.
    const StackDepths* stackDepths(unsigned section) const;

private:
    struct Converted {
        TOBFFragment* fragment = nullptr;
        std::vector<DecodedInsn> insns;
        StackDepths stack;
        std::map<std::int64_t, TOBFMarker*> markers; ///< by offset
        std::int64_t labelled = -1; ///< up to here the labels stand in the fragment
        std::map<std::int64_t, std::pair<unsigned, int>> lines; ///< file and line, by offset
    };
    struct Destination {
        std::string name;
        SectionKind kind;
    };

    bool isConverted(const ElfSection& section) const;
    Destination destinationOf(const ElfSection& section) const;
    TOBFSection* sectionFor(const Destination& destination);
    void makeFragments();
    void makeSymbols();
    void takeLines();
    void makeReferencedLabels();
    TOBFMarker* marker(const ElfPlace& place);
    TOBFExpr* plus(TOBFExpr* base, std::int64_t addend) const;
    TOBFExpr* relocated(const ElfRelocation& relocation);

    void convertCode(unsigned index);
    TOBFInsn* makeInsn(unsigned index, const DecodedInsn& insn);
    TOBFExpr* operand(unsigned index, std::uint32_t offset, unsigned reg, bool isImmediate);
    void emitLabels(Converted& converted, std::int64_t upTo);
    static std::int64_t nextLabel(const Converted& converted, std::int64_t otherwise);
    void emitLine(Converted& converted, std::int64_t offset);
    void emitCode(unsigned index, std::vector<TOBFInsn*>& insns);
    void emitData(unsigned index);
    void emitSpace(Converted& converted, std::int64_t size);
    void emitBytes(Converted& converted, const ElfSection& section, std::uint32_t from,
                   std::uint32_t to);
    void emitVector(unsigned index, unsigned number);

    const ElfObject& m_elf;
    SectionNames m_names;
    TOBFModule* m_module;
    std::vector<Converted> m_converted; ///< by section of the compiler's file
    std::vector<TOBFSymbol*> m_symbols; ///< by its symbols; null for sections and files
    std::map<ElfPlace, TOBFSymbol*> m_symbolPlaces;
    std::vector<std::string> m_files;
    std::vector<TOBFFilename*> m_filenames;
    std::vector<std::vector<TOBFInsn*>> m_code; ///< made instructions, by section
    std::pair<unsigned, int> m_currentLine;
};
