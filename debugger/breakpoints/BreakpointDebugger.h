#pragma once

#include "debugger/breakpoints/DebuggerBreakpoint.h"
#include "debugger/expressions/ExpressionContext.h"

#include <QStringList>

#include <set>

/// What the list of breakpoints asks of the debugger.
class BreakpointDebugger {
public:
    virtual ~BreakpointDebugger() = default;

    /// Places a breakpoint at a line of source. Null if the target refuses it; throws
    /// DebuggerBreakpointFailure with the reason where there is one to tell. An empty hardware
    /// index means any.
    virtual DebuggerBreakpoint* setBreakpoint(const QString& name, const Path& file, int line,
                                              int count, bool hardware, bool temporary,
                                              const QString& action,
                                              const QString& hardwareIndex) = 0;
    /// The same at the places that an expression names. An empty trigger means the one that goes
    /// with the place.
    virtual DebuggerBreakpoint* setBreakpoint(const ExpressionContext& context,
                                              const QString& expression, const QString& trigger,
                                              int count, bool hardware, bool temporary,
                                              const QString& action,
                                              const QString& hardwareIndex) = 0;
    /// Takes it from the target and frees it; an unknown one is left alone.
    virtual void clearBreakpoint(DebuggerBreakpoint* breakpoint) = 0;

    /// Arms a breakpoint by the arrival at another, or for good with null. Throws
    /// DebuggerBreakpointFailure if the target can't.
    virtual void chainFrom(DebuggerBreakpoint* breakpoint, DebuggerBreakpoint* from) = 0;

    virtual std::set<DebuggerBreakpoint*> lastMatchedBreakpoints() = 0;
    /// The exception that the target last reported; empty if none.
    virtual QString lastMatchedException() = 0;

    virtual QStringList getExceptionClasses() = 0;
    virtual QStringList getExceptionTypes(unsigned exceptionClass) = 0;
    virtual bool targetHasExceptionClass(unsigned exceptionClass) = 0;
    virtual void setExceptionEnabled(const QString& exception, bool enabled) = 0;
};
