#pragma once

#include "debugger/breakpoints/BreakpointList.h"
#include "debugger/session/DebugControlHost.h"
#include "debugger/session/ProjectProgram.h"

#include <memory>

class DebugSession;
class GantryBenchEnvironmentSettings;
class SymbolicDebuggerInterface;
class TargetControl;
class TargetIOServerTerminalInterface;

/// The commands of debugging: starting a project's program on the connected target, running,
/// stepping, stopping. Windows, the command line and tests drive this.
///
/// A command that can't be carried out throws HException; one that starts a session leaves none
/// behind then.
class DebugControl : private BreakpointListView {
public:
    /// Bits of the mode of startDebugging.
    enum Mode : unsigned {
        Attach = 0,
        Reset = 1,
        Load = 2,
        StopAtEntry = 4,
        ResetOnly = Reset,
        Start = Reset | Load,
        StartStopped = Reset | Load | StopAtEntry,
    };
    static constexpr int PollMilliseconds = 1;

    struct Parts {
        SymbolicDebuggerInterface& debugger;
        TargetControl& targets;
        GantryBenchEnvironmentSettings& settings;
        TargetIOServerTerminalInterface* terminal; ///< of the program; may be null
    };

    /// The parts and the host outlive this object.
    DebugControl(const Parts& parts, DebugControlHost& host);
    ~DebugControl() override;
    DebugControl(const DebugControl&) = delete;
    DebugControl& operator=(const DebugControl&) = delete;

    DebugState state() const { return m_state; }
    bool isDebugging() const override { return m_state != DebugState::Idle; }
    /// The user's breakpoints, which outlive sessions.
    BreakpointList& breakpoints() { return m_breakpoints; }
    /// The running session, or the last one; null before the first.
    DebugSession* session() const { return m_session.get(); }
    /// What shows the breakpoints; null for nothing.
    void setBreakpointView(BreakpointListView* view) { m_breakpointView = view; }

    /// Starts a session. False if the user has refused a step of it, or there is no target.
    bool startDebugging(ProjectElement* project, const QString& configuration, unsigned mode);
    void debugGo();
    /// The program stops, and the next poll finds it.
    void debugBreak();
    /// Into calls, or over them; by instruction, or by statement.
    void debugStep(bool into, bool instruction);
    /// Runs until the frame, a caller's, goes on.
    void debugStepOut(Frame* frame);
    /// Runs to a place that the caller has set a temporary breakpoint at.
    void debugRunTo() { debugGo(); }
    /// The user's wish to end the session: with the settings so, the target is disconnected.
    void debugStopClicked();
    /// Ends the session.
    void debugStop();
    /// The program starts again at its entry.
    void debugRestartClicked();
    /// Steps by statement until it is stopped or fails.
    void debugAutoStep();
    void stopAutoStep() { m_autoStepping = false; }
    bool isAutoStepping() const { return m_autoStepping; }
    /// Called while the host polls.
    void pollDebugger();
    /// Polls by itself until the program has stopped or ended. False if it has ended.
    bool waitForStop();

    /// Ahead of what can't be done during a session: asks the user to end it. True if there is none
    /// then.
    bool checkNotDebugging();

private:
    bool continueToDebug(const ProjectProgram& program);
    void run(const ProjectProgram& program, unsigned mode);
    void prepareTarget(const ProjectProgram& program, unsigned mode, TargetLoadFiles& files);
    void placeBreakpoints(const ProjectProgram& program, unsigned mode);
    /// Places the user's, and the initial one unless there is none or they make it needless.
    void checkBreakpoints(const QString& initial);
    DebuggerBreakpoint* placeStartupBreakpoint(const QString& expression);
    bool sameAddress(const QString& one, const QString& other);
    void placeInitialBreakpoint(const QString& symbol);
    void download(TargetLoadFiles& files);
    void startProgram(const ProjectProgram& program, unsigned mode);
    void startPolling();
    void stopPolling();
    void setState(DebugState state);
    void leave();

    // Of the breakpoints.
    Frame* selectedFrame() const override;
    void sourceBreakpointStateChanged(const Path& file, int line) override;
    void refresh() override;
    void select(BreakpointListItem* item) override;

    Parts m_parts;
    DebugControlHost& m_host;
    BreakpointList m_breakpoints;
    BreakpointListView* m_breakpointView = nullptr;
    std::unique_ptr<DebugSession> m_session;
    DebugState m_state = DebugState::Idle;
    QString m_entry; ///< for a restart
    QStringList m_arguments;
    bool m_polling = false;
    bool m_autoStepping = false;
};
