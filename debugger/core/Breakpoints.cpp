// Setting and finding breakpoints.

#include "debugger/breakpoints/BreakpointExpression.h"
#include "debugger/core/TOBFDebugger.h"
#include "debugger/expressions/ParserException.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFSection.h"
#include "objfile/model/TOBFSymbol.h"
#include "objfile/query/SymbolicDebug.h"
#include "target/HMonitor.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

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

TOBFBreakpoint* TOBFDebugger::place(BreakpointChain chain, bool temporary, Breakpoints& list)
{
    auto breakpoint = std::make_unique<TOBFBreakpoint>(std::move(chain));
    breakpoint->setTemporary(temporary);
    if (!target().setBreakpoint(breakpoint->breakpoint()))
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
    const auto named = action.isEmpty() ? -1 : int(getBreakActions().indexOf(action));
    record->action = static_cast<std::uint32_t>(named < 0 ? target().getStopActionNumber() : named);
    BreakpointChain chain;
    chain.push_back(std::move(record));
    return place(std::move(chain), temporary, m_breakpoints);
}

DebuggerBreakpoint* TOBFDebugger::setBreakpoint(const QString& name, const Path& file, int line,
                                                int count, bool hardware, bool temporary,
                                                const QString& action, const QString& hardwareIndex)
{
    const unsigned address = getLineAddress(name, file, line);
    if (address == None)
        throw DebuggerBreakpointFailure("No code for breakpoint");
    return setBreakpoint(address, temporary, hardware, count,
                         ::hardwareIndex({count, hardware, hardwareIndex, {}, action}), action);
}

DebuggerBreakpoint* TOBFDebugger::setBreakpoint(const ExpressionContext& context,
                                                const QString& expression, const QString& trigger,
                                                int count, bool hardware, bool temporary,
                                                const QString& action, const QString& hardwareIndex)
{
    clearLastSymbol();
    initExpressionParser(context);
    std::list<BreakpointExpression> terms;
    try {
        const ExpressionPtr tree = parse(expression.toUtf8().constData());
        if (!tree)
            throw DebuggerBreakpointFailure("Invalid expression");
        evaluateBreakpointExpression(tree.get(), terms);
    } catch (const ParserException& exception) {
        throw DebuggerBreakpointFailure(exception.getCause());
    }
    BreakpointChain chain =
        makeBreakpointChain(terms, {count, hardware, hardwareIndex, trigger, action}, target(),
                            [this](unsigned address) { return sectionOf(address); });
    const auto execute = static_cast<std::uint32_t>(target().getExecuteTriggerNumber());
    Breakpoints& list = chain.back()->trigger == execute ? m_breakpoints : m_expressionBreakpoints;
    return place(std::move(chain), temporary, list);
}

/// That of the last symbol which an expression has named; without one, that of the address.
TOBFSection* TOBFDebugger::sectionOf(unsigned address)
{
    if (const TOBFSymbol* const symbol = lastSymbol(); symbol && symbol->definition())
        return symbol->definition()->evaluate().section;
    SymbolicDebug* const debug = symbols(address);
    return debug ? debug->getSection(address) : nullptr;
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
            if (breakpoint->breakpoint() == record)
                return breakpoint.get();
    return nullptr;
}

void TOBFDebugger::clearBreakpoint(DebuggerBreakpoint* breakpoint)
{
    for (Breakpoints* const list : {&m_breakpoints, &m_expressionBreakpoints}) {
        const auto found = findBreakpoint(*list, breakpoint);
        if (found == list->end())
            continue;
        m_monitor->removeBreakpoint((*found)->breakpoint());
        releaseChainsFrom((*found)->breakpoint());
        list->erase(found);
        return;
    }
}

/// What was waiting for the arrival at a breakpoint that goes is armed.
void TOBFDebugger::releaseChainsFrom(const HBreakpoint* from)
{
    for (const Breakpoints* const list : {&m_breakpoints, &m_expressionBreakpoints})
        for (const auto& breakpoint : *list)
            if (HBreakpoint& head = *breakpoint->breakpoint(); head.enabledBy == from) {
                head.enabledBy = nullptr;
                head.enabled = true;
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
        const HBreakpoint& head = *breakpoint->breakpoint();
        if (head.address == address && !head.isRegister && !head.next && !head.enabledBy)
            existing = breakpoint.get();
    }
    return true;
}

void TOBFDebugger::chainFrom(DebuggerBreakpoint* breakpoint, DebuggerBreakpoint* from)
{
    if (!target().canChain())
        throw DebuggerBreakpointFailure("Chaining not supported");
    HBreakpoint& head = *static_cast<TOBFBreakpoint*>(breakpoint)->breakpoint();
    head.enabledBy = from ? static_cast<TOBFBreakpoint*>(from)->breakpoint() : nullptr;
    head.enabled = !from;
}

SymbolicDebuggerInterface::BreakpointSet TOBFDebugger::lastMatchedBreakpoints()
{
    DebuggerBreakpoint* const matched = m_monitor ? findBreakpoint(m_monitor->matched()) : nullptr;
    return matched ? BreakpointSet{matched} : BreakpointSet{};
}

// Exceptions

QString TOBFDebugger::lastMatchedException()
{
    unsigned address = 0;
    const char* const error = m_monitor ? m_monitor->lastError(address) : nullptr;
    return QString::fromLatin1(error);
}

QStringList TOBFDebugger::getExceptionClasses() { return {u"Program Errors"_s}; }

QStringList TOBFDebugger::getExceptionTypes(unsigned exceptionClass)
{
    QStringList names;
    for (int i = 0; targetHasExceptionClass(exceptionClass) && i < m_monitor->numErrors(); ++i)
        names << QString::fromLatin1(m_monitor->getError(i));
    return names;
}

bool TOBFDebugger::targetHasExceptionClass(unsigned exceptionClass)
{
    return exceptionClass == 0 && m_monitor && m_monitor->numErrors() > 0;
}

void TOBFDebugger::setExceptionEnabled(const QString& exception, bool enabled)
{
    if (m_monitor)
        m_monitor->setErrorEnabled(exception.toLatin1().constData(), enabled);
}
