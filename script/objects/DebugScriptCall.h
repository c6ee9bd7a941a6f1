#pragma once

#include "script/es/ESNativeClass.h"

#include <functional>

class DebugSession;
class SymbolicDebuggerInterface;

// What the functions of the object `Debug` share.

DebugSession& sessionOf(const ESCall& call);
SymbolicDebuggerInterface& debuggerOf(const ESCall& call);
/// Failures of the debugger become those of the script.
ESValue guarded(const ESCall& call, const std::function<ESValue()>& work);

// What the target has recorded, and what it shows.

ESValue setTraceEnabled(const ESCall& call);
ESValue getTrace(const ESCall& call);
ESValue resetTrace(const ESCall& call);
ESValue setExecutionCountEnabled(const ESCall& call);
ESValue getExecutionCounts(const ESCall& call);
ESValue resetExecutionCount(const ESCall& call);
ESValue cycles(const ESCall& call);
ESValue interrupts(const ESCall& call);
ESValue raiseInterrupt(const ESCall& call);
ESValue exceptions(const ESCall& call);
ESValue setExceptionEnabled(const ESCall& call);
ESValue lastException(const ESCall& call);
ESValue disassembly(const ESCall& call);
