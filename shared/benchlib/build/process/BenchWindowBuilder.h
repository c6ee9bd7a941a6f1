#pragma once

#include "build/process/ToolProcess.h"
#include "projects/solution/Builder.h"

#include <QElapsedTimer>
#include <vector>

class BuildCommands;
class BuildLogItem;
class BuildLogModel;
class BuildObserver;

/// The builder that runs the commands of a build, one at a time, and waits for each while the event
/// loop keeps running. What the tools say goes into the build log.
class BenchWindowBuilder : public Builder {
public:
    struct Options {
        /// Environment/Build/Show Command Lines
        bool showCommandLines = false;
    };

    /// The log and the commands outlive the builder; so does the observer, which may be null.
    BenchWindowBuilder(BuildLogModel* log, BuildCommands* commands, BuildObserver* observer,
                       const Options& options, ToolProcessFactory makeProcess);
    ~BenchWindowBuilder() override;

    void beginGroup(ProjectElement* element, const QString& title, unsigned flags = 0) override;
    void endGroup(ProjectElement* element) override;
    void init() override;
    void setTotalSteps(ProjectElement* element, int count) override;
    void setDirectory(const QString& directory) override { m_directory = directory; }
    void setCommand(const QStringList& command) override { m_command = command; }
    void setEnvironment(const QStringList& environment) override { m_environment = environment; }
    void setOutputFiles(const QStringList& files) override { m_outputFiles = files; }
    void setTemporaryFiles(const QStringList& files) override { m_temporaryFiles = files; }
    /// Returns when the command has ended. Runs nothing once the build is cancelled.
    void doit() override;
    void nextStep() override;
    void error(const QString& text) override;
    void note(const QString& text) override;
    void success(const QString& text) override;
    void message(const QString& text) override;
    void idle() override;

    /// Ends the running command and the build. Called from an event that comes in while the builder
    /// works.
    void cancelBuild();

private:
    bool runBuiltin(QStringList& command);
    bool start(const QStringList& command);
    void reportSignal(const QString& program, int status);
    void showOutput();
    bool processLine();
    void removeFiles(const QStringList& files);

    BuildLogModel* m_log;
    BuildCommands* m_commands;
    BuildObserver* m_observer;
    Options m_options;
    ToolProcessFactory m_makeProcess;

    int m_steps = 0;
    BuildLogItem* m_item = nullptr; ///< of the project's group
    QString m_title;
    std::vector<ProjectElement*> m_elements; ///< those whose groups are open
    int m_currentStep = 0;

    QString m_directory;
    QStringList m_command;
    QStringList m_environment;
    QStringList m_outputFiles;
    QStringList m_temporaryFiles;

    std::unique_ptr<ToolProcess> m_process;
    bool m_processKilled = false;
    QElapsedTimer m_sinceEvents;
};
