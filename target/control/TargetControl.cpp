#include "target/control/TargetControl.h"

#include "base/HException.h"
#include "objfile/loadfiles/LoadFile.h"
#include "projects/settings/GantryBenchEnvironmentSettings.h"
#include "target/TargetLoadSession.h"
#include "target/control/TargetList.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

std::optional<std::uint64_t> TargetControlHost::evaluate(const QString& text)
{
    bool isNumber = false;
    const qulonglong value = text.trimmed().toULongLong(&isNumber, 0);
    return isNumber ? std::optional<std::uint64_t>(value) : std::nullopt;
}

TargetControl::TargetControl(GantryBenchEnvironmentSettings& settings, TargetControlHost& host,
                             TargetList* targets)
    : m_settings(settings),
      m_host(host),
      m_targets(targets)
{
}

// Connection ------------------------------------------------------------------------------------

void TargetControl::connectTargetInterface(TargetInterface* target, bool force,
                                           ProjectElement* project, const QString& configuration)
{
    if (m_target != nullptr) {
        if (force && !m_host.checkNotDebugging())
            return;
        if (!force)
            m_host.endDebugging();
        disconnectTargetInterface();
    }
    if (target == nullptr) {
        m_host.targetChanged();
        return;
    }
    m_target = target;
    target->setProgressing(m_progressing);
    target->syncSettingsWithProject(project, configuration);
    target->connect(m_settings.identify->toBool());
    targetWasConnected();
}

void TargetControl::targetWasConnected()
{
    if (can(TargetCapability::Interrupts))
        for (int i = 0; i < m_target->getNumInterrupts(); ++i) {
            InterruptSource& source = m_interruptSources.emplace_back();
            m_target->getInterruptInformation(static_cast<unsigned>(i), source.number, source.name,
                                              source.description);
        }
    m_watchesDisconnection = m_target->canBeExternallyDisconnected();
    m_autoConnectName = m_target->title();
    m_autoConnectCapabilities = m_target->capabilities();
    m_target->executeConnectScript();
    m_host.showStatus(u"Connected target interface \"%1\""_s.arg(m_target->title()));
    m_host.targetChanged();
}

void TargetControl::disconnectTargetInterface()
{
    if (m_target == nullptr)
        return;
    const bool wasConnected = m_target->isConnected();
    const QString title = m_target->title();
    if (wasConnected) {
        try {
            m_target->executeDisconnectScript();
            m_target->disconnect();
        } catch (...) {
            forgetTarget();
            throw;
        }
    }
    forgetTarget();
    if (wasConnected)
        m_host.showStatus(u"Disconnected target interface \"%1\""_s.arg(title));
    m_host.targetChanged();
}

void TargetControl::forgetTarget()
{
    m_interruptSources.clear();
    m_watchesDisconnection = false;
    m_target = nullptr;
}

void TargetControl::reconnectTargetInterface()
{
    if (!targetIsConnected())
        return;
    TargetInterface* const target = m_target;
    const TargetProject project = target->project();
    connectTargetInterface(target, true, project.project(), project.configuration());
}

bool TargetControl::targetCanAutoConnect() const
{
    return m_settings.autoConnect->toBool() && m_targets != nullptr
        && m_targets->getTargetInterfaceByName(m_autoConnectName) != nullptr;
}

TargetInterface* TargetControl::autoConnect(ProjectElement* project, const QString& configuration)
{
    if (targetIsConnected())
        m_target->syncSettingsWithProject(project, configuration);
    else if (TargetInterface* last = m_targets != nullptr
                 ? m_targets->getTargetInterfaceByName(m_autoConnectName)
                 : nullptr)
        connectTargetInterface(last, true, project, configuration);
    return targetIsConnected() ? m_target : nullptr;
}

unsigned TargetControl::capabilities() const
{
    return targetIsConnected() ? m_target->capabilities() : m_autoConnectCapabilities;
}

bool TargetControl::showsCycleCounter() const
{
    return targetIsConnected()
        && (m_target->capabilities()
            & (TargetCapability::CycleCount | TargetCapability::InstructionCount))
        != 0;
}

QString TargetControl::statusText() const
{
    if (!targetIsConnected())
        return u" Disconnected "_s;
    const QString device = m_target->deviceId();
    return device.isEmpty() ? u" %1 "_s.arg(m_target->title())
                            : u" %1 on %2 "_s.arg(device, m_target->title());
}

void TargetControl::pollExternalDisconnection()
{
    if (m_polling || m_target == nullptr || !m_watchesDisconnection)
        return;
    m_polling = true;
    bool lost = false;
    try {
        lost = !m_target->isConnected() || m_target->hasBeenExternallyDisconnected();
    } catch (const HException&) {
        lost = true;
    }
    if (lost) {
        try {
            connectTargetInterface(nullptr, false, nullptr, {});
        } catch (const HException&) {
            // It is gone in any case.
        }
        m_host.showTranscript();
        m_host.logError(u"Target connection has been lost"_s);
    }
    m_polling = false;
}

// The list ----------------------------------------------------------------------------------------

/// Disconnects, and tells whether the targets may go now.
bool TargetControl::nothingConnected()
{
    connectTargetInterface(nullptr, true, nullptr, {});
    return m_targets != nullptr && !targetIsConnected();
}

bool TargetControl::loadTargets()
{
    if (!nothingConnected())
        return false;
    m_targets->load();
    m_host.targetChanged();
    return true;
}

bool TargetControl::importTargets(const QString& path)
{
    if (!nothingConnected())
        return false;
    m_targets->importTargetDefinitions(path);
    m_host.targetChanged();
    return true;
}

bool TargetControl::restoreDefaultTargets()
{
    if (!m_host.ask(u"Are you sure you want to overwrite the existing targets with the default set "
                    "of targets?"_s,
                    u"Restore Default Targets"_s)
        || !nothingConnected())
        return false;
    m_targets->restoreDefaultTargets();
    m_host.targetChanged();
    return true;
}

bool TargetControl::exportTargets(const QString& path)
{
    if (m_targets == nullptr
        || (QFileInfo::exists(path)
            && !m_host.ask(u"File already exists, are you sure you want to overwrite the existing "
                           "file?"_s,
                           u"Export Target Definitions To XML File"_s)))
        return false;
    m_targets->exportTargetDefinitions(path);
    return true;
}

// Load files ------------------------------------------------------------------------------------

QString TargetControl::verifyFoundNoErrors() { return u"Verifier has found no errors."_s; }

void TargetControl::downloadLoadFiles(TargetInterface& target, LoadFileList& list, bool image)
{
    list.sort();
    if (list.overlap())
        throw HException("cannot download multiple load files because they overlap");
    for (const LoadFileListItem& item : list)
        target.checkLoadFileFits(item.loadFile);
    TargetLoadSession session(target);
    if (target.loaderEraseAll())
        target.eraseAll();
    else
        for (const LoadFileListItem& item : list)
            target.eraseLoadFile(item.loadFile, item.path.c_str(), image, true);
    for (const LoadFileListItem& item : list)
        target.downloadLoadFile(item.loadFile, item.path.c_str(), image, true);
    target.flushMemoryInterfaces();
    if (TargetCapability::canVerify(target.capabilities())
        && m_settings.enableLoadVerification->toBool())
        verifyLoadFiles(target, list, image, false, true);
    session.end();
}

bool TargetControl::verifyLoadFiles(TargetInterface& target, LoadFileList& list, bool image,
                                    bool complete, bool differential)
{
    TargetLoadSession session(target);
    const auto failed = std::find_if(list.begin(), list.end(), [&](const LoadFileListItem& item) {
        return !target.verifyLoadFile(item.loadFile, item.path.c_str(), image, differential);
    });
    if (failed != list.end())
        offerDifferences(target, QString::fromStdString(failed->path), *failed->loadFile);
    session.end();
    if (failed == list.end() && complete)
        m_host.inform(verifyFoundNoErrors(), u"Verify Complete"_s);
    return failed == list.end();
}

void TargetControl::offerDifferences(TargetInterface& target, const QString& fileName,
                                     LoadFileInterface& file)
{
    if (!m_host.ask(u"Verifier has found errors.<p>Do you want to compare the differences?"_s,
                    u"Verify Failed"_s))
        return;
    LoadFileSections uploaded;
    target.uploadLoadFile(&file, fileName.toLocal8Bit().constData(), uploaded);
    m_host.showDifferences({fileName, file.loadFileSections().sections(),
                            target.deviceId() + u" - "_s + target.title(), uploaded.sections(),
                            2 * target.codeMemory()->wordLength()});
}

void TargetControl::patchLoadFiles(TargetInterface& target, LoadFileList& list)
{
    for (const LoadFileListItem& item : list)
        target.patchLoadFile(item.loadFile);
}

// Projects --------------------------------------------------------------------------------------

bool TargetControl::targetCompatibleWithProject(ProjectElement* project,
                                                const QString& configuration)
{
    if (m_target == nullptr || !m_settings.enableProcessorCheck->toBool())
        return true;
    const QString processor = TargetProject(project, configuration).value("Target");
    if (processor.isEmpty() || m_target->isCompatibleWith(processor))
        return true;
    return m_host.ask(
        u"The project is for %1, and the target is a %2.<p>Do you want to continue?"_s.arg(
            processor, m_target->deviceId()),
        u"Target"_s);
}

bool TargetControl::downloadProject(ProjectElement* project, const QString& configuration)
{
    TargetInterface* const target = autoConnect(project, configuration);
    if (target == nullptr || !targetCompatibleWithProject(project, configuration))
        return false;
    m_host.showTranscript();
    target->reset(true, true);
    TargetLoadFiles files;
    if (!m_host.loadFilesOf(project, configuration, files))
        return false;
    patchLoadFiles(*target, files.list);
    downloadLoadFiles(*target, files.list, true);
    return true;
}

bool TargetControl::debugVerify(ProjectElement* project, const QString& configuration)
{
    TargetLoadFiles files;
    if (!targetIsConnected() || !m_host.loadFilesOf(project, configuration, files))
        return false;
    patchLoadFiles(*m_target, files.list);
    return verifyLoadFiles(*m_target, files.list, true, true, false);
}
