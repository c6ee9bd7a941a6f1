#include "build/system/ExportBuilder.h"

#include "build/system/StandardBuildSystem.h"

using namespace Qt::Literals::StringLiterals;

void ExportBuilder::setDirectory(const QString& directory)
{
    if (directory == m_directory)
        return;
    m_directory = directory;
    m_lines << u"cd "_s + directory;
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
