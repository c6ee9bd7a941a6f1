#pragma once

#include "build/process/QJob.h"
#include "build/process/ToolProcess.h"

#include <QList>

class BuildLogModel;

/// Runs jobs one after the other without blocking; their output goes into a log. The group that the
/// caller has opened in the log is closed when no job is left.
class JobQueue : public QObject {
    Q_OBJECT

public:
    /// The log outlives the queue.
    JobQueue(QObject* parent, BuildLogModel* log, bool stopAtFailure,
             ToolProcessFactory makeProcess);
    /// Kills what is running, without a signal.
    ~JobQueue() override;

    void submit(const QJob& job) { m_jobs << job; }
    void submit(const QList<QJob>& jobs) { m_jobs << jobs; }
    /// Does nothing while a job is running. Without jobs all of them are done.
    void start();
    /// Ends the running job and forgets the others.
    void kill();
    /// Forgets the jobs that haven't begun.
    void clear() { m_jobs.clear(); }

    /// True while a process is running.
    bool isRunning() const { return m_process != nullptr; }
    /// True while a process is running or a job is waiting.
    bool isBusy() const { return isRunning() || !m_jobs.isEmpty(); }
    /// Shows each job's directory and command line ahead of its output.
    void setShowCommandLines(bool show) { m_showCommandLines = show; }

signals:
    /// The exit status; not 0 for a job that failed.
    void jobDone(int status);
    void allJobsDone();

private:
    /// Nothing if the job is running now, else its exit status.
    std::optional<int> startJob(const QJob& job);
    int copy(const QJob& job);
    void finishJob(int status);
    void readyReadStdout();
    void readyReadStderr();
    void processExited();
    void addOutputLine(const QString& line);

    BuildLogModel* m_log;
    bool m_stopAtFailure;
    ToolProcessFactory m_makeProcess;
    bool m_showCommandLines = false;
    bool m_dispatching = false; ///< start() is left to the caller
    QList<QJob> m_jobs;
    std::unique_ptr<ToolProcess> m_process;
};
