#pragma once

#include "build/process/ToolProcess.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <functional>
#include <utility>
#include <vector>

/// The application that event processing needs, made at the first call.
inline QCoreApplication& application()
{
    static int argc = 1;
    static char name[] = "test_build";
    static char* argv[] = {name, nullptr};
    static QCoreApplication instance(argc, argv);
    return instance;
}

/// A process that plays a script: at each wait the next step runs.
class FakeToolProcess : public ToolProcess {
public:
    struct Script {
        struct Step {
            QStringList stdoutLines;
            QStringList stderrLines;
            std::function<void()> action = nullptr;
        };
        std::vector<Step> steps;
        int status = 0;
        bool canStart = true;
    };
    /// What the process was told, in order.
    using Told = QStringList;

    FakeToolProcess(Script script, Told* told) : m_script(std::move(script)), m_told(told) { }

    void setWorkingDirectory(const QString& directory) override
    {
        tell(QStringLiteral("directory ") + directory);
    }
    void setArguments(const QStringList& arguments) override
    {
        tell(QStringLiteral("arguments ") + arguments.join(u'|'));
    }
    void setEnvironment(const QStringList& environment) override
    {
        tell(QStringLiteral("environment ") + environment.join(u'|'));
    }
    bool start() override
    {
        tell(QStringLiteral("start"));
        m_running = m_script.canStart;
        return m_running;
    }
    bool isRunning() const override { return m_running; }
    std::optional<QString> readLineStdout() override { return take(m_stdout); }
    std::optional<QString> readLineStderr() override { return take(m_stderr); }
    int exitStatus() const override { return m_script.status; }
    void kill() override
    {
        tell(QStringLiteral("kill"));
        m_script.steps.clear();
        m_script.status = SignalStatus + 9;
    }
    void waitForActivity() override
    {
        if (m_next == m_script.steps.size() || m_script.steps.empty()) {
            m_running = false;
            return;
        }
        const Script::Step step = m_script.steps[m_next++];
        m_stdout += step.stdoutLines;
        m_stderr += step.stderrLines;
        // The last step's output and the end arrive together.
        m_running = m_next < m_script.steps.size();
        if (step.action)
            step.action();
    }

private:
    void tell(const QString& what)
    {
        if (m_told != nullptr)
            *m_told << what;
    }
    static std::optional<QString> take(QStringList& lines)
    {
        if (lines.isEmpty())
            return std::nullopt;
        return lines.takeFirst();
    }

    Script m_script;
    Told* m_told;
    bool m_running = false;
    std::size_t m_next = 0;
    QStringList m_stdout;
    QStringList m_stderr;
};

inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

inline QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
