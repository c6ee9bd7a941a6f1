#include "build/process/JobQueue.h"

#include "base/QTx.h"
#include "build/log/BuildLogModel.h"

#include <QDir>
#include <QPointer>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int FailureStatus = 1;

} // namespace

JobQueue::JobQueue(QObject* parent, BuildLogModel* log, bool stopAtFailure,
                   ToolProcessFactory makeProcess)
    : QObject(parent),
      m_log(log),
      m_stopAtFailure(stopAtFailure),
      m_makeProcess(std::move(makeProcess))
{
}

JobQueue::~JobQueue()
{
    if (m_process)
        m_process->disconnect(this);
}

void JobQueue::start()
{
    if (isRunning() || m_dispatching)
        return;
    const QPointer<JobQueue> alive(this);
    m_dispatching = true;
    while (alive && !isRunning() && !m_jobs.isEmpty()) {
        if (const std::optional<int> status = startJob(m_jobs.takeFirst()))
            finishJob(*status);
    }
    if (!alive)
        return;
    m_dispatching = false;
    if (isRunning())
        return;
    m_log->endGroup();
    emit allJobsDone();
}

std::optional<int> JobQueue::startJob(const QJob& job)
{
    if (job.isCopy())
        return copy(job);
    if (m_showCommandLines) {
        addOutputLine(u"cd "_s + QDir(job.directory()).canonicalPath());
        addOutputLine(job.command().join(u' '));
    }
    m_process = m_makeProcess();
    m_process->setWorkingDirectory(job.directory());
    m_process->setArguments(job.command());
    if (!job.environment().isEmpty())
        m_process->setEnvironment(job.environment());
    connect(m_process.get(), &ToolProcess::readyReadStdout, this, &JobQueue::readyReadStdout);
    connect(m_process.get(), &ToolProcess::readyReadStderr, this, &JobQueue::readyReadStderr);
    connect(m_process.get(), &ToolProcess::processExited, this, &JobQueue::processExited);
    m_log->setWorkingDirectory(Path(job.directory()));
    if (m_process->start())
        return std::nullopt;
    m_process.reset();
    m_log->addError(u"Can't start process "_s + job.command().value(0));
    return FailureStatus;
}

int JobQueue::copy(const QJob& job)
{
    const QDir directory(job.directory());
    const QStringList& command = job.command();
    const bool copied = command.size() == 3
        && QTx::copyFile(directory.filePath(command[1]), directory.filePath(command[2]), true);
    if (copied)
        return 0;
    m_log->addError(u"Copy failed"_s);
    return FailureStatus;
}

void JobQueue::finishJob(int status)
{
    if (status != 0 && m_stopAtFailure)
        clear();
    emit jobDone(status);
}

void JobQueue::kill()
{
    clear();
    if (m_process)
        m_process->kill();
}

void JobQueue::readyReadStdout()
{
    while (const std::optional<QString> line = m_process->readLineStdout())
        addOutputLine(*line);
}

void JobQueue::readyReadStderr()
{
    while (const std::optional<QString> line = m_process->readLineStderr())
        addOutputLine(*line);
}

void JobQueue::processExited()
{
    m_process->disconnect(this);
    readyReadStderr();
    readyReadStdout();
    const int status = m_process->exitStatus();
    // It is the sender of the signal that is being dealt with.
    m_process.release()->deleteLater();
    const QPointer<JobQueue> alive(this);
    m_dispatching = true;
    finishJob(status);
    if (!alive)
        return;
    m_dispatching = false;
    start();
}

void JobQueue::addOutputLine(const QString& line) { m_log->processOutput(line); }
