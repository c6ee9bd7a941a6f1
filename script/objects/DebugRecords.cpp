#include "debugger/session/DebugSession.h"
#include "script/objects/DebugScriptCall.h"
#include "target/HMonitor.h"

namespace {

ESValue arrayOf(const ESCall& call, std::vector<ESValue>& elements)
{
    return call.context.newArray(int(elements.size()), elements.data());
}

bool isOn(const ESCall& call) { return ESContext::toBoolean(call.argument(0)); }

/// An entry of the trace or of the counts; `property` names its second number.
ESValue record(const ESCall& call, unsigned address, const char* property, unsigned number,
               const QString& text)
{
    ESObject* const entry = call.context.newObject();
    ESContext::define(entry, "address", double(address));
    ESContext::define(entry, property, double(number));
    ESContext::define(entry, "text", call.string(text));
    return entry;
}

} // namespace

// Trace and counts

ESValue setTraceEnabled(const ESCall& call)
{
    debuggerOf(call).setTraceEnabled(isOn(call));
    return {};
}

ESValue getTrace(const ESCall& call)
{
    std::vector<ESValue> entries;
    SymbolicDebuggerInterface& debugger = debuggerOf(call);
    debugger.iterateTrace();
    unsigned address = 0;
    unsigned when = 0;
    for (QString text; debugger.getTrace(address, when, text);)
        entries.push_back(record(call, address, "cycles", when, text));
    return arrayOf(call, entries);
}

ESValue resetTrace(const ESCall& call)
{
    debuggerOf(call).resetTrace();
    return {};
}

ESValue setExecutionCountEnabled(const ESCall& call)
{
    debuggerOf(call).setExecutionCountEnabled(isOn(call));
    return {};
}

ESValue getExecutionCounts(const ESCall& call)
{
    std::vector<ESValue> entries;
    SymbolicDebuggerInterface& debugger = debuggerOf(call);
    debugger.iterateExecutionCount();
    unsigned address = 0;
    unsigned count = 0;
    unsigned extra = 0;
    for (QString text; debugger.getExecutionCount(address, count, extra, text);)
        entries.push_back(record(call, address, "count", count, text));
    return arrayOf(call, entries);
}

ESValue resetExecutionCount(const ESCall& call)
{
    debuggerOf(call).resetExecutionCount();
    return {};
}

ESValue cycles(const ESCall& call) { return double(sessionOf(call).target().cycleCount()); }

// Interrupts and exceptions

ESValue interrupts(const ESCall& call)
{
    std::vector<ESValue> names;
    HMonitor& target = sessionOf(call).target();
    for (int i = 0; i < target.getNumInterrupts(); ++i) {
        unsigned number = 0;
        QString name;
        QString description;
        target.getInterruptInformation(unsigned(i), number, name, description);
        names.push_back(call.string(name));
    }
    return arrayOf(call, names);
}

ESValue raiseInterrupt(const ESCall& call)
{
    HMonitor& target = sessionOf(call).target();
    const double index = call.integer(0, -1);
    if (index < 0 || index >= target.getNumInterrupts())
        call.context.throwException(ESContext::ErrorKind::Error,
                                    QStringLiteral("there is no such interrupt"));
    target.raiseInterrupt(int(index));
    return {};
}

ESValue exceptions(const ESCall& call)
{
    std::vector<ESValue> names;
    SymbolicDebuggerInterface& debugger = debuggerOf(call);
    const auto classes = unsigned(debugger.getExceptionClasses().size());
    for (unsigned exceptionClass = 0; exceptionClass < classes; ++exceptionClass)
        for (const QString& name : debugger.getExceptionTypes(exceptionClass))
            names.push_back(call.string(name));
    return arrayOf(call, names);
}

ESValue setExceptionEnabled(const ESCall& call)
{
    debuggerOf(call).setExceptionEnabled(call.text(0), ESContext::toBoolean(call.argument(1)));
    return {};
}

ESValue lastException(const ESCall& call)
{
    return call.string(debuggerOf(call).lastMatchedException());
}

// Disassembly

ESValue disassembly(const ESCall& call)
{
    constexpr double LinesByDefault = 10;
    return guarded(call, [&] {
        SymbolicDebuggerInterface& debugger = debuggerOf(call);
        const unsigned pc = sessionOf(call).pc();
        const auto address = unsigned(call.integer(0, pc));
        debugger.locateDisassembly(address);
        QStringList text;
        debugger.getDisassemblyText(text);
        const int first = debugger.getDisassemblyLineNumber(address);
        const double count = call.integer(1, LinesByDefault);
        std::vector<ESValue> lines;
        for (int i = first; i > 0 && i <= text.size() && i - first < count; ++i)
            lines.push_back(call.string(text[i - 1]));
        return arrayOf(call, lines);
    });
}
