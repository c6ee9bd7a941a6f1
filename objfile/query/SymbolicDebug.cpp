#include "objfile/query/SymbolicDebug.h"

#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/model/TOBFType.h"
#include "objfile/query/ScopeWalk.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <optional>

namespace {

constexpr std::size_t InsnGrowth = 1024;
constexpr std::size_t LocusGrowth = 100;
/// Types that a type refers to by one road; more are a damaged file's.
constexpr int LongestTypeChain = 100;

using Position = SymbolicDebug::Position;

unsigned addressOf(const Position& place) { return static_cast<unsigned>((*place)->pc()); }

struct LineKey {
    HString* file;
    unsigned line;
    friend bool operator<(const LineKey& a, const LineKey& b)
    {
        if (a.file != b.file)
            return std::less<>()(a.file, b.file);
        return a.line < b.line;
    }
};

LineKey keyOf(const TOBFInsn* item)
{
    const auto* locus = static_cast<const TOBFLocus*>(item);
    HString* file = locus->filename() != nullptr ? locus->filename()->file() : nullptr;
    return {file, static_cast<unsigned>(locus->line())};
}

bool isCode(const TOBFSection* section)
{
    return section != nullptr && section->sectionKind() == SectionKind::Code;
}

/// The spellings under which a name is looked for.
std::array<HString*, 2> spellings(const QString& name)
{
    const std::string text = name.toStdString();
    return {HString::intern(text), HString::intern("_" + text)};
}

TOBFSymbol* findIn(const std::map<HString*, TOBFSymbol*>& symbols,
                   const std::array<HString*, 2>& names)
{
    for (HString* name : names) {
        const auto it = symbols.find(name);
        if (it != symbols.end())
            return it->second;
    }
    return nullptr;
}

std::optional<std::int64_t> evaluated(const TOBFExpr* expr)
{
    if (expr == nullptr)
        return std::nullopt;
    const TOBFValue value = expr->evaluate();
    return value.failed ? std::nullopt : std::optional(value.value);
}

template <typename T> void pushInSteps(std::vector<T>& list, T element, std::size_t growth)
{
    // Doubling once the steps are small against the list, so that large ones aren't copied often.
    if (list.size() == list.capacity())
        list.reserve(list.size() + std::max(growth, list.size()));
    list.push_back(element);
}

} // namespace

SymbolicDebug::SymbolicDebug(TOBFModule* module, const Path& path)
    : m_module(module),
      m_path(path),
      m_mapping(this)
{
    indexItems();
    indexSymbols();
    indexScopes();
}

void SymbolicDebug::indexItems()
{
    for (const auto& [name, section] : m_module->sectionMap()) {
        if (section->sectionKind() != SectionKind::Unspecified && !isCode(section))
            continue;
        for (TOBFFragment* fragment : section->fragments()) {
            std::list<TOBFInsn*>& items = fragment->insns();
            for (Position it = items.begin(); it != items.end(); ++it) {
                if ((*it)->length() > 0)
                    pushInSteps(m_insns, it, InsnGrowth);
                else if ((*it)->kind() == TOBFKind::Locus)
                    pushInSteps(m_loci, it, LocusGrowth);
            }
        }
    }
    for (const Position& it : m_loci)
        m_mapping.addLine(keyOf(*it).file, keyOf(*it).line);
    std::stable_sort(m_insns.begin(), m_insns.end(), [](const Position& a, const Position& b) {
        return addressOf(a) < addressOf(b);
    });
    std::transform(m_insns.begin(), m_insns.end(), std::back_inserter(m_addresses), addressOf);
    std::stable_sort(m_loci.begin(), m_loci.end(), [](const Position& a, const Position& b) {
        const LineKey left = keyOf(*a);
        const LineKey right = keyOf(*b);
        if (left < right || right < left)
            return left < right;
        return addressOf(a) < addressOf(b);
    });
}

void SymbolicDebug::indexSymbols()
{
    for (TOBFSymbol* symbol : m_module->allSymbols()) {
        addNamedType(symbol->type());
        m_declarations.push_back({symbol->getName(), symbol});
        if (symbol->definition() == nullptr)
            continue;
        const TOBFValue value = symbol->definition()->evaluate();
        if (!value.failed)
            m_symbols.push_back({value.value, symbol, value.section});
    }
    std::stable_sort(m_symbols.begin(), m_symbols.end(),
                     [](const Value& a, const Value& b) { return a.value < b.value; });
    std::stable_sort(m_declarations.begin(), m_declarations.end(),
                     [](const auto& a, const auto& b) { return std::less<>()(a.name, b.name); });
}

void SymbolicDebug::addNamedType(TOBFType* type)
{
    for (int i = 0; type != nullptr && i < LongestTypeChain; ++i) {
        if (type->isStruc()) {
            m_types.emplace(type->getName(), type);
            return;
        }
        type = type->getElementType();
    }
}

void SymbolicDebug::indexScopes()
{
    forEachScope(m_module, [this](TOBFScope* scope) {
        const auto start = evaluated(scope->start());
        const auto end = evaluated(scope->end());
        if (start.has_value() && end.has_value())
            m_spans.push_back({*start, *end, scope});
    });
}

TOBFInsn* SymbolicDebug::GetInsn(unsigned address) const
{
    const auto it = std::lower_bound(m_addresses.begin(), m_addresses.end(), address);
    if (it == m_addresses.end() || *it != address)
        return nullptr;
    return *m_insns[static_cast<std::size_t>(it - m_addresses.begin())];
}

const SymbolicDebug::Position* SymbolicDebug::findItem(unsigned address) const
{
    const auto behind = std::upper_bound(m_addresses.begin(), m_addresses.end(), address);
    if (behind == m_addresses.begin())
        return nullptr;
    const Position& place = m_insns[static_cast<std::size_t>(behind - m_addresses.begin()) - 1];
    const auto length = static_cast<unsigned>((*place)->length());
    return (*place)->pc() >= 0 && address - addressOf(place) < length ? &place : nullptr;
}

TOBFSection* SymbolicDebug::getSection(unsigned address) const
{
    for (const auto& [name, section] : m_module->sectionMap()) {
        const unsigned lowest = section->lowestAddress();
        const unsigned start = lowest != TOBFSection::NoAddress ? lowest : 0;
        if (address >= start && address - start < section->getSize())
            return section;
    }
    return nullptr;
}

/// Looks at the symbols with one value: that of the address, else the nearest below. Of several the
/// first that is accepted is the answer.
template <typename Accept>
TOBFSymbol* SymbolicDebug::findValue(int address, bool exact, bool countsAbsolute,
                                     Accept accept) const
{
    const auto byValue = [](const Value& a, std::int64_t value) { return a.value < value; };
    auto first = std::lower_bound(m_symbols.begin(), m_symbols.end(), address, byValue);
    const auto firstAccepted = [&](std::int64_t value) -> TOBFSymbol* {
        const auto from = std::lower_bound(m_symbols.begin(), m_symbols.end(), value, byValue);
        for (auto it = from; it != m_symbols.end() && it->value == value; ++it)
            if (accept(*it))
                return it->symbol;
        return nullptr;
    };
    const auto counts = [&](const Value& it) { return countsAbsolute || it.section != nullptr; };
    for (auto it = first; it != m_symbols.end() && it->value == address; ++it)
        if (exact || counts(*it))
            return firstAccepted(address);
    if (exact)
        return nullptr;
    while (first != m_symbols.begin())
        if (counts(*--first))
            return firstAccepted(first->value);
    return nullptr;
}

TOBFSymbol* SymbolicDebug::findSymbol(int address, bool exact) const
{
    return findValue(address, exact, true, [](const Value&) { return true; });
}

TOBFSymbol* SymbolicDebug::findDataSymbol(int address, bool exact) const
{
    return findValue(address, exact, true,
                     [](const Value& it) { return it.section != nullptr && !isCode(it.section); });
}

TOBFSymbol* SymbolicDebug::findCodeSymbol(int address, bool exact) const
{
    return findValue(address, exact, true, [](const Value& it) { return isCode(it.section); });
}

TOBFSymbol* SymbolicDebug::findFunctionSymbol(int address, bool exact) const
{
    return findValue(address, exact, false, [](const Value& it) {
        return it.symbol->type() != nullptr && it.symbol->type()->isFunction();
    });
}

TOBFSymbol* SymbolicDebug::findClosestSymbol(int address) const
{
    const TOBFInsn* item = GetInsn(static_cast<unsigned>(address));
    if (item == nullptr)
        return nullptr;
    TOBFSymbol* closest = nullptr;
    for (const TOBFInsn* it : item->fragment()->insns()) {
        if (it == item)
            break;
        if (it->isMarker() && static_cast<const TOBFMarker*>(it)->symbol() != nullptr)
            closest = static_cast<const TOBFMarker*>(it)->symbol();
    }
    return closest;
}

bool SymbolicDebug::locate(HString* file, unsigned line, Positions::const_iterator& position) const
{
    position = std::lower_bound(
        m_loci.begin(), m_loci.end(), LineKey{file, line},
        [](const Position& place, const LineKey& key) { return keyOf(*place) < key; });
    return position != m_loci.end();
}

TOBFSymbol* SymbolicDebug::findModuleSymbol(const QString& name) const
{
    return findIn(m_module->symbols(), spellings(name));
}

TOBFSymbol* SymbolicDebug::findGlobalSymbol(const QString& name) const
{
    return findIn(m_module->publicSymbols(), spellings(name));
}

TOBFSymbol* SymbolicDebug::findDeclaredSymbol(const QString& name, const QString& file,
                                              int line) const
{
    HString* const fileName = HString::intern(file.toStdString());
    for (HString* spelling : spellings(name)) {
        auto it = std::lower_bound(
            m_declarations.begin(), m_declarations.end(), spelling,
            [](const Declaration& a, HString* key) { return std::less<>()(a.name, key); });
        for (; it != m_declarations.end() && it->name == spelling; ++it) {
            const TOBFLocus* locus = it->symbol->locus();
            if (locus != nullptr && keyOf(locus).file == fileName
                && (line == 0 || locus->line() == line))
                return it->symbol;
        }
    }
    return nullptr;
}

TOBFScope* SymbolicDebug::findScope(int address) const
{
    if (m_scopeAddress != address || m_bestScope == nullptr)
        findBestScopeMatch(address);
    return m_bestScope;
}

/// Of the scopes around the address the narrowest wins, and of equal ones the last.
void SymbolicDebug::findBestScopeMatch(int address) const
{
    m_scopeAddress = address;
    m_bestScope = nullptr;
    m_bestStart = -1;
    m_bestEnd = std::numeric_limits<std::int32_t>::max();
    for (const Span& it : m_spans) {
        const bool holds = it.start <= address && address < it.end;
        if (!holds || it.start < m_bestStart || it.end > m_bestEnd)
            continue;
        m_bestScope = it.scope;
        m_bestStart = it.start;
        m_bestEnd = it.end;
    }
}

TOBFSymbol* SymbolicDebug::findScopedSymbol(const QString& name, int address) const
{
    const auto names = spellings(name);
    for (TOBFScope* scope = findScope(address); scope != nullptr; scope = scope->scope())
        if (TOBFSymbol* symbol = findIn(scope->symbols(), names))
            return symbol;
    return nullptr;
}

TOBFType* SymbolicDebug::findNamedType(const QString& name) const
{
    const auto find = [this](const QString& text) {
        const auto it = m_types.find(HString::intern(text.toStdString()));
        return it != m_types.end() ? it->second : nullptr;
    };
    const QString keyword = QStringLiteral("struct ");
    TOBFType* type = find(name);
    // The compiler names a structure by its tag alone.
    return type == nullptr && name.startsWith(keyword) ? find(name.sliced(keyword.size())) : type;
}
