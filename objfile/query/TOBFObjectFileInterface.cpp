#include "objfile/query/TOBFObjectFileInterface.h"

#include "base/HException.h"
#include "objfile/format/TOBFfiles.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/model/TOBFType.h"
#include "objfile/query/ObjectDisassembler.h"
#include "objfile/query/ScopeWalk.h"
#include "objfile/query/SymbolicDebug.h"

#include <algorithm>
#include <optional>
#include <string_view>

ObjectDisassembler* ObjectDisassembler::active = nullptr;

namespace {

constexpr std::string_view SegmentPrefix = "___";
constexpr std::string_view AddressSuffix = "_Address";
constexpr std::string_view SizeSuffix = "_Size";

QString textOf(HString* name)
{
    return name != nullptr ? QString::fromStdString(name->str()) : QString();
}

/// A variable in a register, or at an offset from one.
bool isRegisterBased(const TOBFExpr* definition)
{
    if (definition == nullptr)
        return false;
    if (definition->kind() == TOBFKind::RegisterExpr)
        return true;
    return definition->kind() == TOBFKind::BinaryExpr
        && static_cast<const TOBFBinaryExpr*>(definition)->operation() == TAG_BASE_OFFSET;
}

SymbolInformation::ItemType itemTypeOf(const TOBFSymbol* symbol, const TOBFValue& value)
{
    if (value.section == nullptr)
        return SymbolInformation::Absolute;
    if (symbol->type() == nullptr)
        return SymbolInformation::Label;
    return symbol->type()->isFunction() ? SymbolInformation::Function : SymbolInformation::Object;
}

/// "FLASH" of "___FLASH_Address"; nothing if the name isn't of this form.
std::optional<std::string> segmentName(std::string_view name, std::string_view suffix)
{
    if (name.size() < SegmentPrefix.size() + suffix.size() || !name.starts_with(SegmentPrefix)
        || !name.ends_with(suffix))
        return std::nullopt;
    name.remove_prefix(SegmentPrefix.size());
    name.remove_suffix(suffix.size());
    return std::string(name);
}

bool lies(const SectionInformation& section, const SegmentInformation& segment)
{
    return section.start >= segment.start && section.start - segment.start < segment.size;
}

/// The values of the symbols of one kind, by the name of their segment.
class SegmentValues {
public:
    explicit SegmentValues(std::string_view suffix) : m_suffix(suffix) { }

    /// Takes a symbol of this kind; its name if it has no value.
    HString* take(TOBFSymbol* symbol)
    {
        HString* name = symbol->getName();
        const auto segment = segmentName(name->view(), m_suffix);
        if (!segment.has_value())
            return nullptr;
        if (symbol->definition() == nullptr)
            return name;
        const TOBFValue value = symbol->definition()->evaluate();
        if (value.failed)
            return name;
        m_values[*segment] = static_cast<unsigned>(value.value);
        return nullptr;
    }
    const std::map<std::string, unsigned>& values() const { return m_values; }

private:
    std::string_view m_suffix;
    std::map<std::string, unsigned> m_values;
};

} // namespace

TOBFObjectFileInterface::~TOBFObjectFileInterface()
{
    if (m_debug != nullptr)
        TOBFfiles::release(m_debug);
    if (m_module != nullptr)
        TOBFfiles::release(m_module);
}

void TOBFObjectFileInterface::load()
{
    if (m_loaded)
        return;
    m_loaded = true;
    try {
        m_module = TOBFfiles::getModule(m_path);
        if (m_module == nullptr)
            return;
        readSymbols();
        addSizes();
    } catch (const HException&) {
        // The list stays as far as it has come.
    }
}

void TOBFObjectFileInterface::readSymbols()
{
    for (TOBFSection* section : m_module->sections())
        section->computeSectionMetrics();
    forEachScope(m_module, [this](TOBFScope* scope) {
        if (scope->functionSymbol() != nullptr)
            m_functionScopes.emplace(scope->functionSymbol(), scope);
    });
    for (const auto& [name, symbol] : m_module->publicSymbols())
        addSymbol(symbol, true);
    addScopedSymbols(m_module);
}

void TOBFObjectFileInterface::addSizes()
{
    for (TOBFSection* section : m_module->sections()) {
        const unsigned size = section->accumulatedSize();
        switch (section->sectionKind()) {
        case SectionKind::Code: m_codeSize += size; break;
        case SectionKind::Data:
        case SectionKind::Zeroed: m_dataSize += size; break;
        case SectionKind::Const: m_constSize += size; break;
        default: break;
        }
    }
}

void TOBFObjectFileInterface::addSymbol(TOBFSymbol* symbol, bool access)
{
    HString* name = symbol->getName();
    if (symbol->definition() == nullptr || name == nullptr
        || name->view().find('$') != std::string_view::npos || !m_added.insert(symbol).second)
        return;
    const TOBFValue value = symbol->definition()->evaluate();
    if (value.failed)
        return;
    const TOBFLocus* locus = symbol->locus();
    const bool hasFile = locus != nullptr && locus->filename() != nullptr;
    m_symbols.emplace_back(
        static_cast<unsigned>(value.value), sizeOf(symbol), locus != nullptr ? locus->line() : 0,
        itemTypeOf(symbol, value), access,
        SymbolInformation::Texts{
            textOf(name), value.section != nullptr ? textOf(value.section->getName()) : QString(),
            symbol->type() != nullptr ? textOf(symbol->type()->getName()) : QString(),
            hasFile ? textOf(locus->filename()->file()) : QString()});
}

void TOBFObjectFileInterface::addScopedSymbols(TOBFScope* root)
{
    forEachScope(root, [this](TOBFScope* scope) {
        for (const auto& [name, symbol] : scope->symbols())
            if (!isRegisterBased(symbol->definition()))
                addSymbol(symbol, false);
    });
}

TOBFScope* TOBFObjectFileInterface::findScopeFor(TOBFSymbol* symbol) const
{
    const auto it = m_functionScopes.find(symbol);
    return it != m_functionScopes.end() ? it->second : nullptr;
}

unsigned TOBFObjectFileInterface::sizeOf(TOBFSymbol* symbol) const
{
    if (symbol->type() == nullptr)
        return 0;
    if (!symbol->type()->isFunction())
        return static_cast<unsigned>(std::max(symbol->type()->size(), 0));
    const TOBFScope* scope = findScopeFor(symbol);
    if (scope == nullptr || scope->start() == nullptr || scope->end() == nullptr)
        return 0;
    const TOBFValue start = scope->start()->evaluate();
    const TOBFValue end = scope->end()->evaluate();
    return start.failed || end.failed ? 0 : static_cast<unsigned>(end.value - start.value);
}

unsigned TOBFObjectFileInterface::codeSize()
{
    load();
    return m_codeSize;
}

unsigned TOBFObjectFileInterface::dataSize()
{
    load();
    return m_dataSize;
}

unsigned TOBFObjectFileInterface::constSize()
{
    load();
    return m_constSize;
}

void TOBFObjectFileInterface::iterateSymbols()
{
    load();
    m_next = 0;
}

const SymbolInformation* TOBFObjectFileInterface::nextSymbol()
{
    return m_next < m_symbols.size() ? &m_symbols[m_next++] : nullptr;
}

void TOBFObjectFileInterface::getSegments(std::vector<SegmentInformation>& segments)
{
    load();
    if (m_module == nullptr)
        return;
    SegmentValues addresses(AddressSuffix);
    SegmentValues sizes(SizeSuffix);
    HString* undefined = nullptr;
    for (TOBFSymbol* symbol : m_module->allSymbols()) {
        if (symbol->getName() == nullptr)
            continue;
        HString* const missing[] = {addresses.take(symbol), sizes.take(symbol)};
        for (HString* name : missing)
            if (undefined == nullptr)
                undefined = name;
    }
    std::vector<SectionInformation> runs;
    for (const auto& [name, section] : m_module->sectionMap())
        collectRuns(section, runs);
    for (const auto& [name, start] : addresses.values()) {
        const auto size = sizes.values().find(name);
        if (size == sizes.values().end())
            continue;
        SegmentInformation segment{QString::fromStdString(name), QString(), start, size->second, 0};
        for (const SectionInformation& run : runs)
            if (lies(run, segment))
                segment.used += run.size;
        segments.push_back(segment);
    }
    if (undefined != nullptr)
        throw HException("undefined symbol " + undefined->str());
}

void TOBFObjectFileInterface::getSections(std::vector<SectionInformation>& sections)
{
    std::vector<SegmentInformation> segments;
    try {
        getSegments(segments);
    } catch (const HException&) {
        // Sections are shown without the segments that aren't known.
    }
    if (m_module == nullptr)
        return;
    const std::size_t first = sections.size();
    for (const auto& [name, section] : m_module->sectionMap())
        collectRuns(section, sections);
    for (std::size_t i = first; i < sections.size(); ++i) {
        // Segments may lie within one another: the smallest is the place.
        const SegmentInformation* best = nullptr;
        for (const SegmentInformation& it : segments)
            if (lies(sections[i], it) && (best == nullptr || it.size < best->size))
                best = &it;
        if (best != nullptr)
            sections[i].segment = best->name;
    }
}

void TOBFObjectFileInterface::collectRuns(TOBFSection* section,
                                          std::vector<SectionInformation>& sections) const
{
    bool open = false;
    for (TOBFFragment* fragment : section->fragments()) {
        for (TOBFInsn* item : fragment->insns()) {
            if (item->pc() < 0 || item->length() < 1)
                continue;
            const auto start = static_cast<unsigned>(item->pc());
            if (!open || sections.back().start + sections.back().size != start)
                sections.push_back({textOf(section->getName()), QString(), start, 0,
                                    QString::fromLatin1(sectionKindName(section->sectionKind()))});
            open = true;
            sections.back().size += static_cast<unsigned>(item->length());
        }
    }
}

bool TOBFObjectFileInterface::disassemble(const Path& path, unsigned line, FileMappings* mappings)
{
    m_lines.clear();
    load();
    if (m_module == nullptr || ObjectDisassembler::active == nullptr)
        return false;
    if (m_debug == nullptr)
        m_debug = TOBFfiles::getSymbolicDebug(m_path);
    HString* file = HString::intern(path.str());
    SymbolicDebug::Positions::const_iterator locus;
    if (m_debug == nullptr || !m_debug->locate(file, line, locus))
        return false;
    bool found = false;
    for (; locus != m_debug->loci().end(); ++locus) {
        const auto* position = static_cast<TOBFLocus*>(**locus);
        if (position->filename() == nullptr || position->filename()->file() != file
            || static_cast<unsigned>(position->line()) != line)
            break;
        const auto end = position->fragment()->insns().end();
        for (auto item = std::next(*locus); item != end && (*item)->locus() == position; ++item) {
            if ((*item)->isHidden() || (*item)->length() < 1)
                continue;
            found = true;
            disassembleItem(*item, mappings);
        }
    }
    if (mappings != nullptr)
        mappings->create();
    return found;
}

void TOBFObjectFileInterface::disassembleItem(TOBFInsn* item, FileMappings* mappings)
{
    std::vector<unsigned char> bytes(static_cast<std::size_t>(std::max(item->byteCount(), 0)));
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(item->getByte(static_cast<int>(i)));
    const auto address = static_cast<unsigned>(item->pc());
    const auto size = static_cast<unsigned>(bytes.size());
    ObjectDisassembler::active->setDisassembleRange(address, size, bytes.data());
    const QString text =
        ObjectDisassembler::active->disassembleInstructionWithoutMemoryAccess(address);
    if (text.isNull())
        return;
    m_lines += text;
    if (mappings != nullptr)
        mappings->add(static_cast<int>(m_lines.size()), address, size);
}
