#pragma once

#include "target/TargetInterface.h"
#include "target/control/TargetControlHost.h"

#include <vector>

class GantryBenchEnvironmentSettings;
class TargetList;

/// The connected target and what is done with it by project: connect and disconnect, programming
/// and verifying. The windows are views of this.
///
/// A failure is an HException; a connect that fails leaves the target stored but not connected.
class TargetControl {
public:
    struct InterruptSource {
        unsigned number;
        QString name;
        QString description;
    };

    /// All outlive this object. `targets` may be null.
    TargetControl(GantryBenchEnvironmentSettings& settings, TargetControlHost& host,
                  TargetList* targets);

    TargetInterface* targetInterface() const { return m_target; }
    bool targetIsConnected() const { return m_target != nullptr && m_target->isConnected(); }
    /// Disconnects what is connected, and connects the target, if it isn't null; the project's
    /// scripts run with the target connected. With `force` the user is asked before a debug session
    /// ends; without, it just ends.
    void connectTargetInterface(TargetInterface* target, bool force, ProjectElement* project,
                                const QString& configuration);
    void disconnectTargetInterface();
    void reconnectTargetInterface();
    /// True if the setting is on and the last connected target is still there.
    bool targetCanAutoConnect() const;
    /// The connected target, or the one that was connected last if it can be connected now; null if
    /// there is none.
    TargetInterface* autoConnect(ProjectElement* project, const QString& configuration);
    const QString& autoConnectName() const { return m_autoConnectName; }
    /// The connected target's word or, without one, that of the last connected target.
    unsigned capabilities() const;
    bool can(unsigned capability) const { return (capabilities() & capability) == capability; }

    // The list of targets. Each disconnects first, and does nothing if something stays connected.
    bool loadTargets();
    bool importTargets(const QString& path);
    /// Asks the user first.
    bool restoreDefaultTargets();
    /// Asks the user before it overwrites a file. False if the file stays.
    bool exportTargets(const QString& path);

    /// Run every 1000 ms while this is true; a lost target is disconnected and reported once.
    bool watchesDisconnection() const { return m_watchesDisconnection; }
    static constexpr int DisconnectionPollMilliseconds = 1000;
    void pollExternalDisconnection();

    /// The text of the status field.
    QString statusText() const;
    bool showsCycleCounter() const;
    const std::vector<InterruptSource>& interruptSources() const { return m_interruptSources; }
    void setProgressing(void (*progressing)()) { m_progressing = progressing; }

    /// False if the user stops because the project's processor isn't the target's.
    bool targetCompatibleWithProject(ProjectElement* project, const QString& configuration);
    /// Connects if needed, resets, erases, programs and verifies. False if there is no target or
    /// program, or the user has stopped it.
    bool downloadProject(ProjectElement* project, const QString& configuration);
    /// True if the target holds the project's program.
    bool debugVerify(ProjectElement* project, const QString& configuration);

    /// Sorts the list. `image` asks for patched data.
    void downloadLoadFiles(TargetInterface& target, LoadFileList& list, bool image);
    /// On a mismatch the user may see the differences. With `complete` success is told, too.
    bool verifyLoadFiles(TargetInterface& target, LoadFileList& list, bool image, bool complete,
                         bool differential);
    void patchLoadFiles(TargetInterface& target, LoadFileList& list);
    /// Asks whether to compare, and shows what the target holds where the sections are.
    void offerDifferences(TargetInterface& target, const QString& fileName,
                          LoadFileInterface& file);

    static QString verifyFoundNoErrors();

private:
    bool nothingConnected();
    void targetWasConnected();
    void forgetTarget();

    GantryBenchEnvironmentSettings& m_settings;
    TargetControlHost& m_host;
    TargetList* m_targets;
    TargetInterface* m_target = nullptr;
    QString m_autoConnectName;
    unsigned m_autoConnectCapabilities = 0;
    std::vector<InterruptSource> m_interruptSources;
    bool m_watchesDisconnection = false;
    bool m_polling = false;
    void (*m_progressing)() = nullptr;
};
