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
    /// Starts the program at its entry, where it stays if that is wanted. The first argument is by
    /// custom its name.
    void start(const QString& entry, const QStringList& arguments, bool stayStopped);
    /// Takes over the program that runs on the target.
    void attach(const QStringList& arguments);
    /// Until the program reaches this breakpoint, its start-up is going on; then the breakpoint is
    /// cleared, `completed` is called and, with `goOn`, the program runs on.
    void setStartupBreakpoint(DebuggerBreakpoint* breakpoint, bool goOn,
                              std::function<void()> completed);

    /// Looks at the target once. True if the program has stopped where the user is to see it, or
    /// has ended. Never while a call of it is going on.
    bool poll();
    /// Polls until the program has stopped or ended. False if it has ended.
    bool waitForStop();

    /// Whether the program has ended, and with what.
    bool hasEnded() const { return m_ended; }
    int exitCode() const { return m_exitCode; }
    SymbolicDebuggerInterface& debugger() { return m_debugger; }
    HMonitor& target() { return m_target; }
    /// Of the innermost frame; 0 before the first stop.
    unsigned pc();
    /// The innermost frame; null before the first stop.
    Frame* frame(int index = 0) { return m_debugger.getFrame(index); }

    void errorOccurred(const char* text) override;
    void debugBreakOccurred() override { m_debugger.stop(); }
    void inputRequested() override;
    void outputUpdated() override { }
    void exitOccurred(int code) override;
    void loadSymbols(const char* name, unsigned address) override;

private:
    struct Startup {
        DebuggerBreakpoint* breakpoint = nullptr;
        bool goOn = false;
        std::function<void()> completed;
    };

    bool goesOnAfterStartup();
    void enableExceptions();
    void tellException();

    SymbolicDebuggerInterface& m_debugger;
    HMonitor& m_target;
    Host m_host;
    Path m_executable;
    Startup m_startup;
    bool m_polling = false;
    bool m_ended = false;
    int m_exitCode = 0;
};
