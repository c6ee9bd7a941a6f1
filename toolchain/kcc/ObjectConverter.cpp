#include "toolchain/kcc/ObjectConverter.h"

#include "base/Endian.h"
#include "base/HException.h"
#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/msp430/TOBFMSP430Insn.h"
#include "toolchain/kcc/DebugConverter.h"
#include "toolchain/kcc/dwarf/DwarfLines.h"
#include "toolchain/kcc/dwarf/DwarfUnit.h"

#include <elf.h>

#include <algorithm>
#include <charconv>

namespace {

constexpr std::string_view VectorPrefix = "__interrupt_vector_";
constexpr int InterruptEntryDepth = 2; // the status register, above the return address

bool isVector(const ElfSection& section) { return section.name.starts_with(VectorPrefix); }

/// The compiler calls its vectors executable; they are addresses.
bool holdsCode(const ElfSection& section) { return section.isCode() && !isVector(section); }

unsigned vectorNumber(const ElfSection& section)
{
    unsigned number = 0;
    const char* begin = section.name.data() + VectorPrefix.size();
    std::from_chars(begin, section.name.data() + section.name.size(), number);
    return number;
}

/// Whether a section's name is one that the compiler makes for a kind of contents.
bool hasStem(std::string_view name, std::string_view stem)
{
    return name == stem || (name.starts_with(stem) && name[stem.size()] == '.');
}

unsigned flagsFor(SectionKind kind)
{
    const bool loaded = kind == SectionKind::Code || kind == SectionKind::Const;
    return static_cast<unsigned>(kind) | (loaded ? TOBFSection::LoadFlag : 0);
}

HString* intern(std::string_view text) { return HString::intern(text); }

} // namespace

ObjectConverter::ObjectConverter(const ElfObject& elf, const SectionNames& names,
                                 TOBFModule* module)
    : m_elf(elf),
      m_names(names),
      m_module(module),
      m_converted(elf.sections().size()),
      m_code(elf.sections().size())
{
}

void ObjectConverter::convert(bool withDebugInformation)
{
    makeFragments();
    makeSymbols();
    for (unsigned i = 0; i < m_converted.size(); ++i)
        if (m_converted[i].fragment != nullptr && holdsCode(m_elf.sections()[i]))
            convertCode(i);
    if (withDebugInformation && DwarfUnit::exists(m_elf)) {
        takeLines();
        DebugConverter(*this).convert();
    }
    makeReferencedLabels();
    for (unsigned i = 0; i < m_converted.size(); ++i) {
        const ElfSection& section = m_elf.sections()[i];
        if (m_converted[i].fragment == nullptr || holdsCode(section))
            continue;
        if (isVector(section))
            emitVector(i, vectorNumber(section));
        else
            emitData(i);
    }
    for (unsigned i = 0; i < m_converted.size(); ++i)
        if (m_converted[i].fragment != nullptr && holdsCode(m_elf.sections()[i]))
            emitCode(i, m_code[i]);
    m_module->nameMarkers();
}

bool ObjectConverter::isConverted(const ElfSection& section) const
{
    return section.isAllocated() && section.size > 0;
}

ObjectConverter::Destination ObjectConverter::destinationOf(const ElfSection& section) const
{
    const SectionKind kind = section.isCode() ? SectionKind::Code
        : section.type == SHT_NOBITS          ? SectionKind::Zeroed
        : section.isWritable()                ? SectionKind::Data
                                              : SectionKind::Const;
    if (isVector(section))
        return {m_names.vectors, SectionKind::Const};
    if (hasStem(section.name, ".text"))
        return {m_names.code, kind};
    if (hasStem(section.name, ".rodata"))
        return {m_names.constant, kind};
    if (hasStem(section.name, ".data"))
        return {m_names.data, kind};
    if (hasStem(section.name, ".bss"))
        return {m_names.zeroed, kind};
    return {section.name, kind};
}

TOBFSection* ObjectConverter::sectionFor(const Destination& destination)
{
    HString* name = intern(destination.name);
    TOBFSection* section = m_module->findSection(name);
    if (section == nullptr) {
        section = new TOBFSection(name);
        section->setFlags(flagsFor(destination.kind));
        m_module->addSection(section);
    }
    return section;
}

void ObjectConverter::makeFragments()
{
    for (std::size_t i = 0; i < m_converted.size(); ++i) {
        const ElfSection& section = m_elf.sections()[i];
        if (!isConverted(section))
            continue;
        m_converted[i].fragment = sectionFor(destinationOf(section))->newFragment();
        if (section.alignment > 1)
            m_converted[i].fragment->addInsn(
                new TOBFAlignInsn(static_cast<int>(section.alignment)));
    }
}

void ObjectConverter::makeSymbols()
{
    std::string weak;
    for (const ElfSymbol& it : m_elf.symbols()) {
        m_symbols.push_back(nullptr);
        if (it.isSection() || it.isFile() || it.name.empty())
            continue;
        auto* symbol = new TOBFSymbol(intern(it.name));
        m_symbols.back() = symbol;
        m_module->addSymbol(symbol);
        if (it.isWeak())
            weak += (weak.empty() ? "" : ";") + it.name;
        if (!it.defined)
            continue;
        const bool inSection =
            it.place.section != 0 && m_converted[it.place.section].fragment != nullptr;
        if (inSection) {
            symbol->setDefinition(new TOBFMarkerExpr(marker(it.place)));
            m_symbolPlaces.emplace(it.place, symbol);
        } else {
            symbol->setDefinition(new TOBFConstExpr(it.place.offset));
        }
        if (it.isGlobal())
            m_module->makePublic(symbol);
        symbol->setScope(m_module);
    }
    if (!weak.empty())
        m_module->setAttribute(intern("weak"), intern(weak));
}

void ObjectConverter::takeLines()
{
    const DwarfUnit unit(m_elf);
    const std::string directory(unit.root().text(Dwarf::AtCompilationDirectory));
    DwarfLines lines = readDwarfLines(m_elf, unit.root().number(Dwarf::AtStatementList), directory);
    for (const DwarfLine& line : lines.lines)
        if (line.place.section < m_converted.size())
            m_converted[line.place.section].lines[line.place.offset] = {line.file, line.line};
    m_files = std::move(lines.files);
    m_filenames.resize(m_files.size());
}

TOBFMarker* ObjectConverter::marker(const ElfPlace& place)
{
    TOBFMarker*& it = m_converted[place.section].markers[place.offset];
    if (it == nullptr)
        it = new TOBFMarker;
    return it;
}

TOBFExpr* ObjectConverter::plus(TOBFExpr* base, std::int64_t addend) const
{
    return addend == 0 ? base : TOBFBinaryExpr::make(TAG_ADD, base, new TOBFConstExpr(addend));
}

TOBFExpr* ObjectConverter::codeLabel(const ElfPlace& place)
{
    return new TOBFMarkerExpr(marker(place));
}

TOBFSymbol* ObjectConverter::symbolAt(const ElfPlace& place) const
{
    const auto it = m_symbolPlaces.find(place);
    return it != m_symbolPlaces.end() ? it->second : nullptr;
}

const StackDepths* ObjectConverter::stackDepths(unsigned section) const
{
    if (section >= m_converted.size() || m_converted[section].insns.empty())
        return nullptr;
    return &m_converted[section].stack;
}

TOBFExpr* ObjectConverter::address(const ElfPlace& place)
{
    if (place.section == 0 || m_converted[place.section].fragment == nullptr)
        return new TOBFConstExpr(place.offset);
    const ElfSection& section = m_elf.sections()[place.section];
    const bool inside = place.offset >= 0 && place.offset <= section.size;
    if (holdsCode(section) && inside && place.offset != 0)
        return codeLabel(place);
    // Data keeps its shape: any distance may be counted from its start.
    const ElfPlace start{place.section, 0};
    if (TOBFSymbol* symbol = symbolAt(start))
        return plus(new TOBFSymbolExpr(symbol), place.offset);
    return plus(codeLabel(start), place.offset);
}

TOBFExpr* ObjectConverter::relocated(const ElfRelocation& relocation)
{
    if (TOBFSymbol* symbol = m_symbols[relocation.symbol])
        return plus(new TOBFSymbolExpr(symbol), relocation.addend);
    return address(m_elf.target(relocation));
}

/// A label must exist before the section that it stands in is written out.
void ObjectConverter::makeReferencedLabels()
{
    for (std::size_t i = 0; i < m_converted.size(); ++i)
        if (m_converted[i].fragment != nullptr)
            for (const auto& [offset, relocation] : m_elf.sections()[i].relocations)
                relocated(relocation);
}

// Code.

void ObjectConverter::convertCode(unsigned index)
{
    const ElfSection& section = m_elf.sections()[index];
    Converted& converted = m_converted[index];
    converted.insns = decodeSection(section);
    const bool isInterrupt =
        std::any_of(converted.insns.begin(), converted.insns.end(),
                    [](const DecodedInsn& insn) { return !insn.isData && insn.word == 0x1300; });
    converted.stack =
        computeStackDepths(section, converted.insns, isInterrupt ? InterruptEntryDepth : 0);
    for (std::size_t i = 0; i < converted.insns.size(); ++i) {
        TOBFInsn* insn = makeInsn(index, converted.insns[i]);
        const int depth = converted.stack.depths[i];
        if (!converted.insns[i].isData && depth != StackDepths::Unknown)
            insn->setStackAdjustment(-depth);
        m_code[index].push_back(insn);
    }
}

TOBFExpr* ObjectConverter::operand(unsigned index, std::uint32_t offset, unsigned reg,
                                   bool isImmediate)
{
    const ElfSection& section = m_elf.sections()[index];
    const auto it = section.relocations.find(offset);
    if (it != section.relocations.end())
        return relocated(it->second);
    const std::uint16_t word = Endian::unpackUINT16(section.data.data(), offset, Endian::Little);
    const auto distance = static_cast<std::int16_t>(word);
    if (reg == 0 && !isImmediate)
        return address({index, std::int64_t{offset} + distance});
    const bool isIndex = reg != 0 && reg != 2;
    return new TOBFConstExpr(isIndex ? std::int64_t{distance} : word);
}

TOBFInsn* ObjectConverter::makeInsn(unsigned index, const DecodedInsn& insn)
{
    const ElfSection& section = m_elf.sections()[index];
    if (insn.isData) {
        const auto it = section.relocations.find(insn.offset);
        if (it != section.relocations.end())
            return new TOBFDefAddrInsn(relocated(it->second));
        return new TOBFDefBytesInsn(new TOBFConstExpr(insn.word), 2);
    }
    if (insn.isJump()) {
        const std::int64_t target = insn.jumpTarget();
        if (target < 0 || target > section.size)
            return new TOBFMSP430Insn(insn.word, nullptr, nullptr, false);
        return new TOBFMSP430Insn(insn.word & 0xFC00u, codeLabel({index, target}), nullptr, false);
    }
    const bool twoOperands = insn.word >= 0x4000;
    const unsigned sourceRegister = twoOperands ? insn.word >> 8 & 0xFu : insn.word & 0xFu;
    const bool isImmediate = (insn.word & 0x30) == 0x30;
    TOBFExpr* source =
        insn.source != 0 ? operand(index, insn.source, sourceRegister, isImmediate) : nullptr;
    TOBFExpr* destination =
        insn.destination != 0 ? operand(index, insn.destination, insn.word & 0xFu, false) : nullptr;
    return new TOBFMSP430Insn(insn.word, source, destination, false);
}

void ObjectConverter::emitLabels(Converted& converted, std::int64_t upTo)
{
    for (auto it = converted.markers.upper_bound(converted.labelled);
         it != converted.markers.end() && it->first <= upTo; ++it)
        converted.fragment->addInsn(it->second);
    converted.labelled = std::max(converted.labelled, upTo);
}

/// Where the next label is to stand.
std::int64_t ObjectConverter::nextLabel(const Converted& converted, std::int64_t otherwise)
{
    const auto it = converted.markers.upper_bound(converted.labelled);
    return it != converted.markers.end() ? std::min(it->first, otherwise) : otherwise;
}

void ObjectConverter::emitLine(Converted& converted, std::int64_t offset)
{
    const auto it = converted.lines.find(offset);
    if (it == converted.lines.end() || it->second == m_currentLine)
        return;
    m_currentLine = it->second;
    const auto [file, line] = it->second;
    if (m_filenames[file] == nullptr)
        m_filenames[file] = new TOBFFilename(intern(m_files[file]));
    converted.fragment->addInsn(new TOBFLocus(m_filenames[file], line, TAG_LOCUS));
}

void ObjectConverter::emitCode(unsigned index, std::vector<TOBFInsn*>& insns)
{
    Converted& converted = m_converted[index];
    m_currentLine = {};
    for (std::size_t i = 0; i < insns.size(); ++i) {
        const std::uint32_t offset = converted.insns[i].offset;
        emitLabels(converted, offset);
        emitLine(converted, offset);
        converted.fragment->addInsn(insns[i]);
    }
    emitLabels(converted, m_elf.sections()[index].size);
}

// Data.

void ObjectConverter::emitVector(unsigned index, unsigned number)
{
    m_converted[index].fragment->addInsn(new TOBFOriginInsn(static_cast<int>(number) * 2));
    emitData(index);
}

void ObjectConverter::emitData(unsigned index)
{
    const ElfSection& section = m_elf.sections()[index];
    Converted& converted = m_converted[index];
    if (section.type == SHT_NOBITS) {
        emitSpace(converted, section.size);
        return;
    }
    std::uint32_t at = 0;
    for (const auto& [offset, relocation] : section.relocations) {
        emitBytes(converted, section, at, offset);
        emitLabels(converted, offset);
        converted.fragment->addInsn(new TOBFDefAddrInsn(relocated(relocation)));
        at = offset + 2;
    }
    emitBytes(converted, section, at, section.size);
    emitLabels(converted, section.size);
}

void ObjectConverter::emitSpace(Converted& converted, std::int64_t size)
{
    emitLabels(converted, 0);
    for (std::int64_t at = 0; at < size;) {
        const std::int64_t next = nextLabel(converted, size);
        converted.fragment->addInsn(new TOBFSpaceInsn(new TOBFConstExpr(next - at)));
        emitLabels(converted, next);
        at = next;
    }
}

void ObjectConverter::emitBytes(Converted& converted, const ElfSection& section, std::uint32_t from,
                                std::uint32_t to)
{
    constexpr std::uint32_t ShortestRun = 8;
    while (from < to) {
        emitLabels(converted, from);
        const auto end = static_cast<std::uint32_t>(nextLabel(converted, to));
        std::uint32_t run = from;
        while (run < end && section.data[run] == section.data[from])
            ++run;
        if (run - from >= ShortestRun) {
            converted.fragment->addInsn(
                new TOBFFillInsn(static_cast<int>(run - from), section.data[from]));
            from = run;
            continue;
        }
        const std::uint32_t size = end - from >= 4 ? 4 : end - from >= 2 ? 2 : 1;
        const std::uint64_t value =
            Endian::unpackNumber(section.data.data(), from, size, Endian::Little);
        converted.fragment->addInsn(new TOBFDefBytesInsn(
            new TOBFConstExpr(static_cast<std::int64_t>(value)), static_cast<int>(size)));
        from += size;
    }
}
