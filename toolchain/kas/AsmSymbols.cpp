#include "toolchain/kas/AsmSymbols.h"

#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFType.h"

namespace {

bool isFileLocal(const std::string& name) { return name.starts_with(".L"); }

} // namespace

AsmSymbols::Entry& AsmSymbols::entry(const std::string& name)
{
    const auto [it, added] = m_entries.try_emplace(name);
    if (added)
        m_order.push_back(name);
    return it->second;
}

TOBFSymbol* AsmSymbols::symbolOf(const std::string& name, Entry& entry)
{
    if (entry.symbol == nullptr)
        entry.symbol = new TOBFSymbol(HString::intern(name));
    return entry.symbol;
}

TOBFExpr* AsmSymbols::reference(const std::string& name, const SourceLocation& where)
{
    Entry& it = entry(name);
    if (it.state == State::Equate)
        return it.value;
    if (it.where.line == 0)
        it.where = where;
    if (!isFileLocal(name))
        return new TOBFSymbolExpr(symbolOf(name, it));
    if (it.marker == nullptr)
        it.marker = new TOBFMarker;
    return new TOBFMarkerExpr(it.marker);
}

TOBFExpr* AsmSymbols::numbered(std::int64_t number, bool forward, const SourceLocation& where)
{
    if (forward) {
        Pending& pending =
            m_nextNumbered.try_emplace(number, Pending{nullptr, where}).first->second;
        if (pending.marker == nullptr)
            pending.marker = new TOBFMarker;
        return new TOBFMarkerExpr(pending.marker);
    }
    const auto last = m_lastNumbered.find(number);
    if (last == m_lastNumbered.end())
        throw AsmError{"there is no label '" + std::to_string(number) + "' in front"};
    return new TOBFMarkerExpr(last->second);
}

TOBFMarker* AsmSymbols::defineLabel(const std::string& name, const SourceLocation& where,
                                    TOBFLocus* locus)
{
    Entry& it = entry(name);
    if (it.state != State::Unknown)
        throw AsmError{"'" + name + "' is already defined in line "
                       + std::to_string(it.where.line)};
    it.state = State::Label;
    it.where = where;
    if (it.marker == nullptr)
        it.marker = new TOBFMarker;
    if (!isFileLocal(name)) {
        TOBFSymbol* symbol = symbolOf(name, it);
        symbol->setDefinition(new TOBFMarkerExpr(it.marker));
        symbol->setLocus(locus);
        it.marker->setName(symbol->name());
        it.marker->setSymbol(symbol);
    }
    return it.marker;
}

TOBFMarker* AsmSymbols::defineNumbered(std::int64_t number)
{
    const auto pending = m_nextNumbered.find(number);
    TOBFMarker* marker = pending != m_nextNumbered.end() ? pending->second.marker : new TOBFMarker;
    if (pending != m_nextNumbered.end())
        m_nextNumbered.erase(pending);
    m_lastNumbered[number] = marker;
    return marker;
}

void AsmSymbols::equate(const std::string& name, TOBFExpr* value, const SourceLocation& where)
{
    Entry& it = entry(name);
    if (it.state == State::Label || (isFileLocal(name) && it.marker != nullptr))
        throw AsmError{"'" + name + "' is already a label"};
    it.state = State::Equate;
    it.value = value;
    it.where = where;
    if (!isFileLocal(name))
        symbolOf(name, it)->setDefinition(value);
}

bool AsmSymbols::isGlobal(const std::string& name) const
{
    const auto it = m_entries.find(name);
    return it != m_entries.end() && it->second.global;
}

bool AsmSymbols::isDefined(const std::string& name) const
{
    const auto it = m_entries.find(name);
    return it != m_entries.end() && it->second.state != State::Unknown;
}

void AsmSymbols::finish(Diagnostics& diagnostics)
{
    std::string weakNames;
    for (const std::string& name : m_order) {
        Entry& it = m_entries.at(name);
        if (it.state == State::Unknown && isFileLocal(name) && it.marker != nullptr)
            diagnostics.error(it.where, "label '" + name + "' is used but not defined");
        enter(name, it, weakNames);
    }
    for (const auto& [number, pending] : m_nextNumbered)
        diagnostics.error(pending.where,
                          "there is no label '" + std::to_string(number) + "' behind");
    if (!weakNames.empty())
        m_module->setAttribute(HString::intern("weak"), HString::intern(weakNames));
}

void AsmSymbols::enter(const std::string& name, Entry& entry, std::string& weakNames)
{
    TOBFSymbol* symbol = entry.symbol;
    if (symbol == nullptr)
        return;
    m_module->addSymbol(symbol);
    if (entry.state == State::Unknown)
        return;
    if (entry.function)
        symbol->setType(new TOBFFunctionType(0, 0, 0));
    symbol->setScope(m_module);
    if (entry.global)
        m_module->makePublic(symbol);
    if (entry.weak)
        weakNames += (weakNames.empty() ? "" : ";") + name;
}
