#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

/// A child process whose output is read by lines. Its state changes only while events are
/// processed, so that a caller sees all output before it sees the end.
class ToolProcess : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The exit status of a process that ended by signal N is this plus N.
    static constexpr int SignalStatus = 128;

    virtual void setWorkingDirectory(const QString& directory) = 0;
    /// The first word is the program: a path, or a name that is searched in PATH.
    virtual void setArguments(const QStringList& arguments) = 0;
    /// The whole environment as "NAME=VALUE"; without a call the child has that of its parent.
    virtual void setEnvironment(const QStringList& environment) = 0;

    /// False if the program can't be run.
    virtual bool start() = 0;
    virtual bool isRunning() const = 0;
    /// The next line without its end; nothing if no complete line has arrived. When the process has
    /// ended, what stands behind the last line end counts as a line.
    virtual std::optional<QString> readLineStdout() = 0;
    virtual std::optional<QString> readLineStderr() = 0;
    /// 0 for success; valid when the process has ended.
    virtual int exitStatus() const = 0;
    /// Ends the process with all processes that it has started.
    virtual void kill() = 0;
    /// Processes events, and waits for some if there are none.
    virtual void waitForActivity() = 0;

signals:
    void readyReadStdout();
    void readyReadStderr();
    void processExited();
};

using ToolProcessFactory = std::function<std::unique_ptr<ToolProcess>()>;
