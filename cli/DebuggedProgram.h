#pragma once

#include "cli/CommandLineTerminal.h"
#include "debugger/msp430/MSP430Debugger.h"
#include "debugger/session/DebugSession.h"
#include "script/objects/DebugScriptObject.h"
#include "target/msp430/MSP430Monitor.h"

#include <functional>
#include <memory>

class TargetList;
class Workspace;

/// A program on a target under the debugger, for a script. Its debug I/O is that of the
/// command line; faults of the program and of the session go to standard error.
class DebuggedProgram : private DebuggerHelperFunctions {
public:
    /// Loads and resets: the program stands at its entry. The target is one of the user's list, or
    /// a simulator of its own for an empty name; the device is that of a simulator. Throws
    /// HException, and UsageError for an unknown device.
    DebuggedProgram(const std::string& program, const std::string& device, const QString& target,
                    std::function<bool()> carryOn);
    ~DebuggedProgram() override;

    void install(ESContext* context);
    DebugSession& session() { return m_session; }

private:
    void displayError(const QString& text) override;
    QString getDebugSourceText(const Path& path, int line) override;

    HMonitor& findTarget(const QString& name);
    void connect(const std::string& device);

    CommandLineTerminal m_terminal;
    std::unique_ptr<MSP430Monitor> m_simulator; ///< if no target of the list is wanted
    std::unique_ptr<Workspace> m_workspace;     ///< if one is
    std::unique_ptr<TargetList> m_list;
    HMonitor& m_monitor;
    MSP430Debugger m_debugger;
    DebugSession m_session;
    DebugScriptObject m_object;
};
