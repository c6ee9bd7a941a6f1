#pragma once

#include "debugger/interface/SymbolicDebuggerInterface.h"
#include "target/TargetIOInterfaces.h"

#include <functional>

class HMonitor;

/// A debug session without a window: a program on a connected target, and waiting for it to stop.
///
/// While it lives it serves the program's debug I/O, and the target belongs to the debugger.
class DebugSession : public TargetIOServerHelperFunctions {
public:
    /// What the session asks of its owner while the program runs.
    struct Host {
        /// Called between polls; false stops the program.
        std::function<bool()> carryOn;
        /// The program waits for a line of the terminal.
        std::function<void()> inputRequested;
        std::function<void(const QString& text)> showError;
    };

    /// All outlive the session. The terminal may be null.
    DebugSession(SymbolicDebuggerInterface& debugger, HMonitor& target,
                 TargetIOServerTerminalInterface* terminal, Host host);
    ~DebugSession() override;
    DebugSession(const DebugSession&) = delete;
    DebugSession& operator=(const DebugSession&) = delete;

    /// Writes the program to the target and loads its symbols. Throws HException.
    void load(const Path& executable);
    /// Resets the target; the program stands at its entry. An empty one is the reset vector.
    void reset(const QString& entry = QString(), const QStringList& arguments = {});
    /// Polls until the program has stopped or ended. False if it has ended.
    bool waitForStop();

    /// Whether the program has ended, and with what.
    bool hasEnded() const { return m_ended; }
    int exitCode() const { return m_exitCode; }
    SymbolicDebuggerInterface& debugger() { return m_debugger; }
    /// The innermost frame; null before the first stop.
    Frame* frame(int index = 0) { return m_debugger.getFrame(index); }

    void errorOccurred(const char* text) override;
    void debugBreakOccurred() override { m_debugger.stop(); }
    void inputRequested() override;
    void outputUpdated() override { }
    void exitOccurred(int code) override;
    void loadSymbols(const char* name, unsigned address) override;

private:
    SymbolicDebuggerInterface& m_debugger;
    HMonitor& m_target;
    Host m_host;
    Path m_executable;
    bool m_ended = false;
    int m_exitCode = 0;
};
