#include "build/system/ExportBuilder.h"

#include "base/Path.h"
#include "build/system/StandardBuildSystem.h"

using namespace Qt::Literals::StringLiterals;

void ExportBuilder::setDirectory(const QString& directory)
{
    if (directory == m_directory)
        return;
    m_directory = directory;
    m_lines << u"cd "_s + directory;
}

void ExportBuilder::setOutputFiles(const QStringList& files)
{
    for (const QString& file : files) {
        const QString directory = Path(file).directory().osPath();
        if (directory == m_directory || m_outputDirectories.contains(directory))
            continue;
        m_outputDirectories.insert(directory);
        const bool below = directory.startsWith(m_directory + u'/');
        m_lines << commandLine(
            {u"mkdir"_s, u"-p"_s, below ? directory.mid(m_directory.size() + 1) : directory});
    }
}

void ExportBuilder::setCommand(const QStringList& command)
{
    QString text;
    if (!StandardBuildSystem::getExportableBuiltinCommand(command, text))
        error(command.value(0) + u" not exportable"_s);
    else
        m_lines << text;
}

void ExportBuilder::error(const QString& text)
{
    m_errors = true;
    m_lines << u"ERROR occurred "_s + text;
}
