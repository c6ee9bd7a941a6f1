#pragma once

#include "build/system/BuildSystem.h"

#include <QString>

class BuildLogModel;
class BuildObserver;
class BenchWindowBuilder;

/// What is to be built, and how.
struct BuildRequest {
    /// The title of a log group around everything; empty for none.
    QString title;
    ProjectElement* element = nullptr;
    QString configuration;
    bool clean = false;            ///< remove outputs before each step
    bool cleanOnly = false;        ///< and run no tools
    bool force = false;            ///< treat everything as out of date
    bool batch = false;            ///< the batch configurations of each project
    bool recurse = true;           ///< with children; a project with its dependencies
    bool showCommandLines = false; ///< whatever the user's settings say

    unsigned mode() const;
};

/// One build from the heading of its log to its verdict.
class BuildRun {
public:
    /// All outlive the run; the observer may be null.
    BuildRun(BuildSystem* builds, BuildLogModel* log, BuildObserver* observer);
    ~BuildRun();

    /// Returns when the build has ended. Events are processed meanwhile.
    BuildResult run(const BuildRequest& request);
    /// Ends a build that is running; called from an event. Does nothing otherwise.
    void cancel();

    /// "Build up to date", "Build complete", "Build failed" or "Build terminated".
    static QString verdict(BuildResult result);

private:
    BuildSystem* m_builds;
    BuildLogModel* m_log;
    BuildObserver* m_observer;
    BenchWindowBuilder* m_builder = nullptr;
};
