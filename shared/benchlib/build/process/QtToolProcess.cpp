#include "build/process/QtToolProcess.h"

#include <QCoreApplication>

#include <signal.h>
#include <unistd.h>

QtToolProcess::QtToolProcess(QObject* parent) : ToolProcess(parent)
{
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setChildProcessModifier([] { setpgid(0, 0); });
    connect(&m_process, &QProcess::readyReadStandardOutput, this, &ToolProcess::readyReadStdout);
    connect(&m_process, &QProcess::readyReadStandardError, this, &ToolProcess::readyReadStderr);
    connect(&m_process, &QProcess::finished, this, &ToolProcess::processExited);
}

QtToolProcess::~QtToolProcess()
{
    m_process.disconnect(this);
    if (!isRunning())
        return;
    kill();
    m_process.waitForFinished();
}

ToolProcessFactory QtToolProcess::factory()
{
    return [] { return std::make_unique<QtToolProcess>(); };
}

void QtToolProcess::setWorkingDirectory(const QString& directory)
{
    m_process.setWorkingDirectory(directory);
}

void QtToolProcess::setArguments(const QStringList& arguments)
{
    m_process.setProgram(arguments.value(0));
    m_process.setArguments(arguments.mid(1));
}

void QtToolProcess::setEnvironment(const QStringList& environment)
{
    m_process.setEnvironment(environment);
}

bool QtToolProcess::start()
{
    m_process.start(QIODevice::ReadOnly);
    return m_process.waitForStarted(-1);
}

bool QtToolProcess::isRunning() const { return m_process.state() != QProcess::NotRunning; }

std::optional<QString> QtToolProcess::readLine(OutputLines& lines, QProcess::ProcessChannel channel)
{
    if (std::optional<QString> line = lines.next())
        return line;
    m_process.setReadChannel(channel);
    if (m_process.bytesAvailable() > 0) {
        lines.append(m_process.readAll());
        if (std::optional<QString> line = lines.next())
            return line;
    }
    return isRunning() ? std::nullopt : lines.rest();
}

std::optional<QString> QtToolProcess::readLineStdout()
{
    return readLine(m_stdout, QProcess::StandardOutput);
}

std::optional<QString> QtToolProcess::readLineStderr()
{
    return readLine(m_stderr, QProcess::StandardError);
}

int QtToolProcess::exitStatus() const
{
    const bool crashed = m_process.exitStatus() == QProcess::CrashExit;
    return m_process.exitCode() + (crashed ? SignalStatus : 0);
}

void QtToolProcess::kill()
{
    // The group's leader is ours to wait for, so that its number can't belong to another by now.
    const qint64 leader = m_process.processId();
    if (leader > 0)
        ::kill(-static_cast<pid_t>(leader), SIGKILL);
}

void QtToolProcess::waitForActivity()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}
