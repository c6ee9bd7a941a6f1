#pragma once

#include "cli/CommandLineTerminal.h"
#include "debugger/msp430/MSP430Debugger.h"
#include "debugger/session/DebugSession.h"
#include "script/objects/DebugScriptObject.h"
#include "target/msp430/MSP430Monitor.h"

#include <functional>

/// A program on the simulator under the debugger, for a script. Its debug I/O is that of the
/// command line; faults of the program and of the session go to standard error.
class DebuggedProgram : private DebuggerHelperFunctions {
public:
    /// Loads and resets: the program stands at its entry. Throws HException, and UsageError for an
    /// unknown device.
    DebuggedProgram(const std::string& program, const std::string& device,
                    std::function<bool()> carryOn);

    void install(ESContext* context);
    DebugSession& session() { return m_session; }

private:
    void displayError(const QString& text) override;
    QString getDebugSourceText(const Path& path, int line) override;

    CommandLineTerminal m_terminal;
    MSP430Monitor m_monitor;
    MSP430Debugger m_debugger;
    DebugSession m_session;
    DebugScriptObject m_object;
};
