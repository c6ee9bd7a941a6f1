#pragma once

#include <QString>

#include <memory>

class BenchDescription;
class BuildLogModel;
class GantryBenchEnvironmentSettings;
class MacroSystem;
class MSP430BuildSystem;
class MSP430ProjectSystem;

/// Everything that solutions and builds need, made in its order and installed as the globals, and
/// taken back at the end. The window, the command line and the tests each have one.
class Workspace {
public:
    struct Options {
        /// The root of the installation; empty for that of the running program.
        QString root;
        /// The folder of the user's settings; empty for the one in the home directory.
        QString settingsFolder;
    };

    explicit Workspace(const Options& options);
    ~Workspace();
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    MacroSystem& macros() { return *m_macros; }
    GantryBenchEnvironmentSettings& settings() { return *m_settings; }
    MSP430ProjectSystem& projects() { return *m_projects; }
    MSP430BuildSystem& builds() { return *m_builds; }
    BuildLogModel& log() { return *m_log; }

private:
    std::unique_ptr<BenchDescription> m_description;
    std::unique_ptr<MacroSystem> m_macros;
    std::unique_ptr<GantryBenchEnvironmentSettings> m_settings;
    std::unique_ptr<MSP430ProjectSystem> m_projects;
    std::unique_ptr<MSP430BuildSystem> m_builds;
    std::unique_ptr<BuildLogModel> m_log;
};
