#pragma once

#include <QString>

class ProjectElement;

/// Whether a session is going on, and how the program stands. The numbers are those of the window's
/// states, of which 1 is a build.
enum class DebugState { Idle = 0, Running = 2, Stopped = 3 };

/// What the commands of debugging ask of the window, or of the command line. The defaults are those
/// of a host without a user.
class DebugControlHost {
public:
    virtual ~DebugControlHost() = default;

    /// Saves what is being edited.
    virtual void saveAll() { }
    virtual bool isOutOfDate(ProjectElement*, const QString& /*configuration*/) { return false; }
    /// The user's answer to a question.
    virtual bool ask(const QString& /*text*/, const QString& /*title*/) { return true; }
    /// False if the build has failed.
    virtual bool build(ProjectElement*, const QString& /*configuration*/) { return true; }

    /// A session begins: counters start at 0, and its windows come up.
    virtual void sessionBegins() { }
    virtual void stateChanged(DebugState) { }
    /// From now on pollDebugger is called every PollMilliseconds, until it is stopped.
    virtual void startPolling() { }
    virtual void stopPolling() { }
    /// The program has stopped, and the state is about to change.
    virtual void onBreakpoint() { }
    virtual void programExited(int /*code*/) { }

    /// A download that can be cancelled is going on.
    virtual void showOperationCancel(bool) { }
    virtual void showTranscript() { }
    /// By its settings; with `clear` it is emptied.
    virtual void showDebugTerminal(bool /*clear*/) { }
    virtual void refreshTargets() { }
    virtual void showStatus(const QString& /*text*/) { }
    virtual void logError(const QString& /*text*/) { }

    /// Asked between looks at the program by whoever waits for a stop; false stops the program.
    virtual bool carryOn() { return true; }
    /// The program waits for a line of the terminal.
    virtual void inputRequested() { }
    virtual void displayError(const QString& /*text*/) { }
};
