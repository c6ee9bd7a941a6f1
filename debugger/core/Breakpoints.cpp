// Setting and finding breakpoints.

#include "debugger/core/BreakpointExpression.h"
#include "debugger/core/TOBFDebugger.h"
#include "debugger/expressions/ParserException.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFSection.h"
#include "objfile/model/TOBFSymbol.h"
#include "objfile/query/SymbolicDebug.h"
#include "target/HMonitor.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Comparison {
    std::uint32_t number;
    bool valued;
};

/// Of the monitor, by the kind of a term. Greater and less are those that a target may refuse.
Comparison comparisonOf(int kind)
{
    using Term = BreakpointExpression;
    constexpr std::uint32_t LessThan = 4;
    constexpr std::uint32_t GreaterThan = 5;
    switch (kind) {
    case Term::Equal: return {HBreakpoint::Equal, true};
    case Term::NotEqual: return {HBreakpoint::NotEqual, true};
    case Term::GreaterOrEqual: return {HBreakpoint::GreaterOrEqual, true};
    case Term::LessOrEqual: return {HBreakpoint::LessOrEqual, true};
    case Term::GreaterThan: return {GreaterThan, true};
    case Term::LessThan: return {LessThan, true};
    default: return {HBreakpoint::Equal, false};
    }
}

int hardwareIndexOf(bool hardware, const QString& text)
{
    return hardware && !text.isEmpty() ? text.toInt() : -1;
}

} // namespace

QStringList TOBFDebugger::getBreakTriggers()
{
    QStringList names;
    for (int i = 0; m_monitor && i < m_monitor->numTriggers(); ++i)
        names << QString::fromLatin1(m_monitor->getTrigger(i));
    return names;
}

QStringList TOBFDebugger::getBreakActions()
{
    QStringList names;
    for (int i = 0; m_monitor && i < m_monitor->numActions(); ++i)
        names << QString::fromLatin1(m_monitor->getAction(i));
    return names;
}

QStringList TOBFDebugger::getHardwareBreakPoints()
{
    QStringList names;
    for (int i = 0; m_monitor && i < m_monitor->numHardwareBreakpoints(); ++i)
        names << QString::number(i);
    return names;
}

int TOBFDebugger::actionNumber(const QString& name)
{
    const auto number = name.isEmpty() ? -1 : int(getBreakActions().indexOf(name));
    return number < 0 ? m_monitor->getStopActionNumber() : number;
}

TOBFBreakpoint* TOBFDebugger::place(std::vector<std::unique_ptr<HBreakpoint>> chain, bool temporary,
                                    Breakpoints& list)
{
    auto breakpoint = std::make_unique<TOBFBreakpoint>(std::move(chain), temporary);
    if (!m_monitor->setBreakpoint(&breakpoint->head()))
        return nullptr;
    list.insert(list.begin(), std::move(breakpoint));
    return list.front().get();
}

TOBFBreakpoint* TOBFDebugger::setBreakpoint(unsigned address, bool temporary, bool hardware,
                                            int count, int hardwareIndex, const QString& action)
{
    auto record = std::make_unique<HBreakpoint>();
    record->address = address;
    record->hardware = hardware;
    record->hardwareIndex = hardwareIndex;
    record->count = count;
    record->action = static_cast<std::uint32_t>(actionNumber(action));
    std::vector<std::unique_ptr<HBreakpoint>> chain;
    chain.push_back(std::move(record));
    return place(std::move(chain), temporary, m_breakpoints);
}

DebuggerBreakpoint* TOBFDebugger::setBreakpoint(const QString&, const Path& file, int line,
                                                int count, bool hardware, bool temporary,
                                                const QString& action, const QString& hardwareIndex)
{
    const unsigned address = getLineAddress(QString(), file, line);
    if (address == None)
        throw DebuggerBreakpointFailure(u"No code for breakpoint"_s);
    return setBreakpoint(address, temporary, hardware, count,
                         hardwareIndexOf(hardware, hardwareIndex), action);
}

DebuggerBreakpoint* TOBFDebugger::setBreakpoint(const ExpressionContext& context,
                                                const QString& expression, const QString& trigger,
                                                int count, bool hardware, bool temporary,
                                                const QString& action, const QString& hardwareIndex)
{
    clearLastSymbol();
    initExpressionParser(context);
    std::vector<BreakpointExpression> terms;
    try {
        const ExpressionPtr tree = parse(expression.toUtf8().constData());
        if (!tree)
            throw DebuggerBreakpointFailure(u"Invalid expression"_s);
        terms = evaluateBreakpointExpression(tree);
    } catch (const ParserException& exception) {
        throw DebuggerBreakpointFailure(exception.getCause());
    }
    std::vector<std::unique_ptr<HBreakpoint>> chain;
    for (const BreakpointExpression& term : terms) {
        auto record = std::make_unique<HBreakpoint>();
        record->address = term.address;
        record->isRegister = term.isRegister;
        record->length = term.length;
        record->action = static_cast<std::uint32_t>(actionNumber(action));
        record->inverse = term.kind == BreakpointExpression::InvertedRange;
        const Comparison comparison = comparisonOf(term.kind);
        record->valued = comparison.valued;
        record->comparison = comparison.number;
        record->value = term.value;
        record->mask = term.mask;
        record->count = count;
        record->hardware = hardware;
        record->hardwareIndex = hardwareIndexOf(hardware, hardwareIndex);
        chooseTrigger(*record, trigger);
        chain.push_back(std::move(record));
    }
    const auto execute = static_cast<std::uint32_t>(m_monitor->getExecuteTriggerNumber());
    Breakpoints& list = chain.back()->trigger == execute ? m_breakpoints : m_expressionBreakpoints;
    return place(std::move(chain), temporary, list);
}

/// A trigger that isn't named is that of a write for data and of an arrival for code.
void TOBFDebugger::chooseTrigger(HBreakpoint& record, const QString& name)
{
    const auto execute = static_cast<std::uint32_t>(m_monitor->getExecuteTriggerNumber());
    const auto write = static_cast<std::uint32_t>(m_monitor->getWriteTriggerNumber());
    const qsizetype named = name.isEmpty() ? -1 : getBreakTriggers().indexOf(name);
    if (named >= 0) {
        record.trigger = static_cast<std::uint32_t>(named);
        return;
    }
    record.trigger = record.isRegister ? write : execute;
    if (record.isRegister)
        return;
    const TOBFSection* section = nullptr;
    if (const TOBFSymbol* const symbol = lastSymbol(); symbol && symbol->definition())
        section = symbol->definition()->evaluate().section;
    else if (SymbolicDebug* const debug = symbols(record.address))
        section = debug->getSection(record.address);
    if (!section)
        return;
    constexpr unsigned LastCodeKind = 1;
    constexpr unsigned LastDataKind = 4;
    const unsigned kind = section->flags() & 0xF;
    if (kind <= LastCodeKind)
        record.length = 1;
    else if (kind <= LastDataKind)
        record.trigger = write;
}

TOBFDebugger::Breakpoints::iterator
TOBFDebugger::findBreakpoint(Breakpoints& list, const DebuggerBreakpoint* breakpoint)
{
    return std::find_if(list.begin(), list.end(),
                        [&](const auto& one) { return one.get() == breakpoint; });
}

TOBFBreakpoint* TOBFDebugger::findBreakpoint(const HBreakpoint* record)
{
    for (Breakpoints* const list : {&m_breakpoints, &m_expressionBreakpoints})
        for (const auto& breakpoint : *list)
            if (&breakpoint->head() == record)
                return breakpoint.get();
    return nullptr;
}

void TOBFDebugger::clearBreakpoint(DebuggerBreakpoint* breakpoint)
{
    for (Breakpoints* const list : {&m_breakpoints, &m_expressionBreakpoints}) {
        const auto found = findBreakpoint(*list, breakpoint);
        if (found == list->end())
            continue;
        m_monitor->removeBreakpoint(&(*found)->head());
        list->erase(found);
        return;
    }
}

bool TOBFDebugger::canBreakAt(const QString& name, const Path& file, int line,
                              DebuggerBreakpoint*& existing)
{
    existing = nullptr;
    const unsigned address = getLineAddress(name, file, line);
    if (address == None)
        return false;
    for (const auto& breakpoint : m_breakpoints) {
        const HBreakpoint& head = breakpoint->head();
        if (head.address == address && !head.isRegister && !head.next && !head.enabledBy)
            existing = breakpoint.get();
    }
    return true;
}

void TOBFDebugger::chainFrom(DebuggerBreakpoint* breakpoint, DebuggerBreakpoint* from)
{
    if (!m_monitor->canChain())
        throw DebuggerBreakpointFailure(u"Chaining not supported"_s);
    HBreakpoint& head = static_cast<TOBFBreakpoint*>(breakpoint)->head();
    head.enabledBy = from ? &static_cast<TOBFBreakpoint*>(from)->head() : nullptr;
    head.enabled = !from;
}

SymbolicDebuggerInterface::BreakpointSet TOBFDebugger::lastMatchedBreakpoints()
{
    DebuggerBreakpoint* const matched = m_monitor ? findBreakpoint(m_monitor->matched()) : nullptr;
    return matched ? BreakpointSet{matched} : BreakpointSet{};
}
