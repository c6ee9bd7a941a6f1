// Scripts that the project gives for what a target does, and the entries that it adds to the menu.

#include "target/TargetInterface.h"
#include "target/script/CachedTextFile.h"
#include "target/script/ScriptSystem.h"

using namespace Qt::Literals::StringLiterals;

QString TargetInterface::targetScript()
{
    static CachedTextFile file;
    for (const QString& type : {u"Target Script"_s, u"Reset Script"_s}) {
        const QString path = m_project.fileOfType(type);
        if (path.isEmpty())
            continue;
        host().message(u"Loading target script file "_s + path);
        return file.text(path);
    }
    return {};
}

bool TargetInterface::executeText(const QString& text)
{
    return scriptSystem == nullptr || scriptSystem->execute(targetScript() + u'\n' + text);
}

/// `logLine` may be null. With `unlessRunning` a script that runs already is no failure: it may
/// call for what brings a script of its own.
bool TargetInterface::executeScript(const char* property, const char* logLine, bool unlessRunning)
{
    const QString text = m_project.value(property);
    if (text.isEmpty() || (unlessRunning && scriptSystem != nullptr && scriptSystem->executing()))
        return true;
    if (logLine != nullptr)
        host().message(QLatin1String(logLine) + text);
    return executeText(text);
}

bool TargetInterface::executeResetScript(bool forDownload)
{
    if (m_project.value("target_reset_script").isEmpty())
        return true;
    host().beginGroup(forDownload ? u"Preparing target for download"_s
                                  : u"Preparing target for user application"_s,
                      TargetLogKind::ScriptGroup);
    const bool succeeded = executeScript("target_reset_script", "Executing reset script ", false);
    host().endGroup({});
    return succeeded;
}

bool TargetInterface::executeAttachScript()
{
    return executeScript("target_attach_script", "Executing attach script ", false);
}

bool TargetInterface::executeRunScript()
{
    return executeScript("target_go_script", "Executing run script ", true);
}

bool TargetInterface::executeStopScript()
{
    return executeScript("target_stop_script", "Executing stop script ", true);
}

bool TargetInterface::executeConnectScript()
{
    return executeScript("target_connect_script", "Executing connect script ", true);
}

bool TargetInterface::executeDisconnectScript()
{
    return executeScript("target_disconnect_script", "Executing disconnect script ", true);
}

bool TargetInterface::executeDebugBeginScript()
{
    return executeScript("target_debug_begin_script", "Executing debug begin script ", true);
}

bool TargetInterface::executeDebugEndScript()
{
    return executeScript("target_debug_end_script", nullptr, true);
}

QStringList TargetInterface::getMenuEntries()
{
    m_menuEntries.clear();
    const QString text = isConnected() ? m_project.value("target_extras_script") : QString();
    if (text.isEmpty() || scriptSystem == nullptr)
        return {};
    host().message(u"Executing target extras script "_s + text);
    m_menuEntries = scriptSystem->executeWithResult(targetScript() + u'\n' + text);
    QStringList names;
    for (qsizetype i = 0; i < m_menuEntries.size(); i += 2)
        names << m_menuEntries[i];
    return names;
}

void TargetInterface::executeMenuEntry(const QString& name)
{
    for (qsizetype i = 0; i + 1 < m_menuEntries.size(); i += 2) {
        if (m_menuEntries[i] != name)
            continue;
        host().message(u"Executing target extra "_s + name);
        executeText(m_menuEntries[i + 1]);
        return;
    }
}
