#include "script/objects/DebugScriptObject.h"

#include "base/HException.h"
#include "debugger/expressions/ParserException.h"
#include "debugger/session/DebugSession.h"
#include "script/objects/DebugScriptCall.h"
#include "script/objects/JavaScriptVariableView.h"

using namespace Qt::Literals::StringLiterals;

namespace {

DebugScriptObject& self(const ESCall& call)
{
    return *static_cast<DebugScriptObject*>(call.function->objectClass);
}

} // namespace

DebugSession& sessionOf(const ESCall& call) { return self(call).session(); }

SymbolicDebuggerInterface& debuggerOf(const ESCall& call) { return sessionOf(call).debugger(); }

ESValue guarded(const ESCall& call, const std::function<ESValue()>& work)
{
    QString failure;
    try {
        return work();
    } catch (const ParserException& exception) {
        failure = exception.getCause();
    } catch (const DebuggerBreakpointFailure& exception) {
        failure = exception.text();
    } catch (const HException& exception) {
        failure = QString::fromStdString(exception.message());
    }
    call.context.throwException(ESContext::ErrorKind::Error, failure);
}

namespace {

ExpressionContext contextOf(const ESCall& call, int frame = 0)
{
    return {self(call).session().frame(frame), Path(), 0};
}

/// The full path of a source file of the program that ends with this name.
Path sourceFile(const ESCall& call, const QString& name)
{
    SymbolicDebuggerInterface& debugger = debuggerOf(call);
    for (const QString& executable : debugger.executableNames())
        for (const QString& file : debugger.sourceFileNames(executable))
            if (file == name || file.endsWith(u'/' + name))
                return Path(file);
    return Path(name);
}

ESValue keep(const ESCall& call, DebuggerBreakpoint* breakpoint)
{
    if (!breakpoint)
        throw DebuggerBreakpointFailure(u"The target has no place for the breakpoint"_s);
    self(call).breakpoints().push_back(breakpoint);
    return {};
}

// Breakpoints

ESValue breakAt(const ESCall& call)
{
    return guarded(call, [&] {
        const Path file = sourceFile(call, call.text(0));
        return keep(call,
                    debuggerOf(call).setBreakpoint(QString(), file, int(call.integer(1, 0)), 0,
                                                   false, false, QString(), QString()));
    });
}

ESValue breakOn(const ESCall& call)
{
    return guarded(call, [&] {
        const QString trigger = call.argc > 1 ? call.text(1) : QString();
        return keep(call,
                    debuggerOf(call).setBreakpoint(contextOf(call), call.text(0), trigger, 0, false,
                                                   false, QString(), QString()));
    });
}

ESValue clearBreakpoints(const ESCall& call)
{
    for (DebuggerBreakpoint* const breakpoint : self(call).breakpoints())
        debuggerOf(call).clearBreakpoint(breakpoint);
    self(call).breakpoints().clear();
    return {};
}

// Running. True when the program has stopped, false when it has ended.

ESValue run(const ESCall& call, const std::function<void(SymbolicDebuggerInterface&)>& start)
{
    return guarded(call, [&] {
        DebugSession& session = self(call).session();
        if (!session.hasEnded())
            start(session.debugger());
        return ESValue::boolean(session.waitForStop());
    });
}

ESValue go(const ESCall& call)
{
    return run(call, [](SymbolicDebuggerInterface& debugger) { debugger.go(); });
}

/// By statement; by instruction if the argument is true.
bool byInstruction(const ESCall& call) { return ESContext::toBoolean(call.argument(0)); }

ESValue step(const ESCall& call)
{
    return run(
        call, [&](SymbolicDebuggerInterface& debugger) { debugger.stepinto(byInstruction(call)); });
}

ESValue stepover(const ESCall& call)
{
    return run(
        call, [&](SymbolicDebuggerInterface& debugger) { debugger.stepover(byInstruction(call)); });
}

ESValue stepout(const ESCall& call)
{
    return run(call, [](SymbolicDebuggerInterface& debugger) {
        if (!debugger.getFrame(1))
            throw HException("the innermost function has no caller");
        debugger.stepout(debugger.getFrame(1));
    });
}

ESValue stepto(const ESCall& call)
{
    return run(call, [&](SymbolicDebuggerInterface& debugger) {
        debugger.setBreakpoint(QString(), sourceFile(call, call.text(0)), int(call.integer(1, 0)),
                               0, false, true, QString(), QString());
        debugger.go();
    });
}

// Looking

ESValue evaluate(const ESCall& call)
{
    return guarded(call, [&] {
        JavaScriptVariableView view(&call.context);
        const QString expression = call.text(0);
        debuggerOf(call).evaluateExpression(contextOf(call, int(call.integer(1, 0))), expression,
                                            expression, &view);
        return view.value();
    });
}

ESObject* locationOf(const ESCall& call, int depth)
{
    QString module;
    Path file;
    QString function;
    int line = 0;
    unsigned pc = 0;
    SymbolicDebuggerInterface& debugger = debuggerOf(call);
    debugger.locate(debugger.getFrame(depth), module, file, function, line, pc);
    ESObject* const location = call.context.newObject();
    ESContext::define(location, "file", call.string(file.fileName()));
    ESContext::define(location, "line", double(line));
    ESContext::define(location, "function", call.string(function));
    ESContext::define(location, "address", double(pc));
    ESContext::define(location, "depth", double(depth));
    return location;
}

ESValue location(const ESCall& call) { return locationOf(call, 0); }

ESValue callstack(const ESCall& call)
{
    std::vector<ESValue> frames;
    for (int depth = 0; depth < debuggerOf(call).numcalls(); ++depth)
        frames.emplace_back(locationOf(call, depth));
    return call.context.newArray(int(frames.size()), frames.data());
}

ESValue locals(const ESCall& call)
{
    return guarded(call, [&]() -> ESValue {
        JavaScriptVariableView view(&call.context);
        debuggerOf(call).getLocalVariables(self(call).session().frame(int(call.integer(0, 0))),
                                           &view);
        return view.all();
    });
}

ESValue registers(const ESCall& call)
{
    return guarded(call, [&]() -> ESValue {
        JavaScriptVariableView view(&call.context);
        debuggerOf(call).getRegisters(self(call).session().frame(int(call.integer(0, 0))), &view);
        return view.all();
    });
}

constexpr ESNative Functions[] = {{"break", 2, breakAt},
                                  {"go", 1, go},
                                  {"step", 1, step},
                                  {"stepover", 1, stepover},
                                  {"stepout", 1, stepout},
                                  {"stepto", 2, stepto},
                                  {"evaluate", 1, evaluate},
                                  {"location", 0, location},
                                  {"callstack", 0, callstack},
                                  {"locals", 0, locals},
                                  {"registers", 0, registers},
                                  {"breakOn", 2, breakOn},
                                  {"clearBreakpoints", 0, clearBreakpoints},
                                  {"setTraceEnabled", 1, setTraceEnabled},
                                  {"getTrace", 0, getTrace},
                                  {"resetTrace", 0, resetTrace},
                                  {"setExecutionCountEnabled", 1, setExecutionCountEnabled},
                                  {"getExecutionCounts", 0, getExecutionCounts},
                                  {"resetExecutionCount", 0, resetExecutionCount},
                                  {"cycles", 0, cycles},
                                  {"interrupts", 0, interrupts},
                                  {"raiseInterrupt", 1, raiseInterrupt},
                                  {"exceptions", 0, exceptions},
                                  {"setExceptionEnabled", 2, setExceptionEnabled},
                                  {"lastException", 0, lastException},
                                  {"disassembly", 2, disassembly}};

} // namespace

DebugScriptObject::DebugScriptObject(DebugSession& session)
    : ESNativeClass("Debug", Functions),
      m_session(session)
{
}

void DebugScriptObject::install(ESContext* context)
{
    ESObject* const object = context->newObject();
    object->objectClass = this;
    installFunctions(context, object, 0);
    ESContext::define(context->global(), "Debug", ESValue(object));
}
