#include "debugger/session/DebuggerSettings.h"

#include "debugger/msp430/MSP430Debugger.h"
#include "projects/macros/MacroSystem.h"
#include "projects/settings/GantryBenchEnvironmentSettings.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

void DebuggerSettings::apply(MSP430Debugger& debugger)
{
    debugger.setMaximumBacktraceCalls(unsigned(m_settings.maximumBacktraceCalls->toInt()));
    m_sources.clear();
}

bool DebuggerSettings::debuggerDisassemblyShowLabels()
{
    return m_settings.disassemblyShowLabels->toBool();
}

bool DebuggerSettings::debuggerDisassemblyShowSource()
{
    return m_settings.disassemblyShowSource->toBool();
}

bool DebuggerSettings::debuggerUseHardwareStep()
{
    return m_settings.stepUsingHardwareStep->toBool();
}

Path DebuggerSettings::getDebugSourcePath(const Path& path)
{
    const QString own = path.osPath();
    if (QFileInfo(own).isFile())
        return path;
    QStringList directories = m_settings.sourcePath->toStringList();
    for (QString& directory : directories)
        directory = MacroSystem::replaceMacros(macroSystem->systemMacros(), directory);
    for (qsizetype at = own.indexOf(u'/'); at >= 0; at = own.indexOf(u'/', at + 1)) {
        const QString end = own.sliced(at);
        for (const QString& directory : directories) {
            const QString found = directory + end;
            if (QFileInfo(found).isFile())
                return Path(found);
        }
    }
    return path;
}

QString DebuggerSettings::getDebugSourceText(const Path& path, int line)
{
    const QString file = getDebugSourcePath(path).osPath();
    const qint64 time = QFileInfo(file).lastModified().toMSecsSinceEpoch();
    Source& source = m_sources[file];
    if (source.time != time) {
        QFile in(file);
        source.time = time;
        source.lines = in.open(QIODevice::ReadOnly) ? QString::fromUtf8(in.readAll()).split(u'\n')
                                                    : QStringList();
    }
    return line >= 1 && line <= source.lines.size() ? source.lines[line - 1].trimmed() : QString();
}
