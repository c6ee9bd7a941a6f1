#pragma once

#include "base/Path.h"
#include "debugger/interface/DebuggerHelperFunctions.h"

#include <QHash>
#include <QStringList>

class GantryBenchEnvironmentSettings;
class MSP430Debugger;

/// What a debugger asks of its owner, as far as the user's settings and source files answer it;
/// messages are left to who derives from this.
class DebuggerSettings : public DebuggerHelperFunctions {
public:
    /// The settings outlive this object.
    explicit DebuggerSettings(GantryBenchEnvironmentSettings& settings) : m_settings(settings) { }

    /// What isn't asked but told. Called when a session starts.
    void apply(MSP430Debugger& debugger);

    bool debuggerDisassemblyShowLabels() override;
    bool debuggerDisassemblyShowSource() override;
    bool debuggerUseHardwareStep() override;
    /// The path itself if there is such a file, or the file of that name in the first directory of
    /// the setting that has one; the longest end of the path that fits wins over shorter ones.
    Path getDebugSourcePath(const Path& path) override;
    QString getDebugSourceText(const Path& path, int line) override;

private:
    struct Source {
        qint64 time = -1; ///< of the last change
        QStringList lines;
    };

    GantryBenchEnvironmentSettings& m_settings;
    QHash<QString, Source> m_sources; ///< by their paths in the program
};
