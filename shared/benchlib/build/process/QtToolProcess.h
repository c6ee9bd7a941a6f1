#pragma once

#include "build/process/OutputLines.h"
#include "build/process/ToolProcess.h"

#include <QProcess>

/// The real process. It leads a process group of its own and reads nothing from its standard input.
class QtToolProcess : public ToolProcess {
public:
    explicit QtToolProcess(QObject* parent = nullptr);
    /// Kills a process that is still running.
    ~QtToolProcess() override;

    /// Makes processes of this kind.
    static ToolProcessFactory factory();

    void setWorkingDirectory(const QString& directory) override;
    void setArguments(const QStringList& arguments) override;
    void setEnvironment(const QStringList& environment) override;
    bool start() override;
    bool isRunning() const override;
    std::optional<QString> readLineStdout() override;
    std::optional<QString> readLineStderr() override;
    int exitStatus() const override;
    void kill() override;
    void waitForActivity() override;

private:
    std::optional<QString> readLine(OutputLines& lines, QProcess::ProcessChannel channel);

    QProcess m_process;
    OutputLines m_stdout;
    OutputLines m_stderr;
};
