#pragma once

#include "script/es/ESNativeClass.h"

class DebugSession;
class DebuggerBreakpoint;

/// The global object `Debug` of a session without a window: a script sets breakpoints, runs and
/// steps the program, and looks at it where it has stopped. Must outlive its contexts.
class DebugScriptObject : public ESNativeClass {
public:
    /// The session must outlive this object.
    explicit DebugScriptObject(DebugSession& session);

    void install(ESContext* context);
    DebugSession& session() { return m_session; }
    /// Those that the script has set.
    std::vector<DebuggerBreakpoint*>& breakpoints() { return m_breakpoints; }

private:
    DebugSession& m_session;
    std::vector<DebuggerBreakpoint*> m_breakpoints;
};
