#include "debugger/session/ProjectProgram.h"

#include "base/HException.h"
#include "build/system/BuildSystem.h"
#include "objfile/loadfiles/LoadFileFactory.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;

QString ProjectProgram::name() const { return m_project->attribute(u"Name"_s); }

QString ProjectProgram::value(const char* property) const
{
    return buildSystem->settingForExpanded(m_project, buildSystem->propertyClass(property),
                                           m_configuration);
}

Path ProjectProgram::executable() const
{
    return buildSystem->canLoad(m_project, m_configuration)
        ? Path(buildSystem->output(m_project, m_configuration, false))
        : Path();
}

QString ProjectProgram::workingDirectory() const
{
    const QString directory = m_project->projectDirectory();
    return QDir(directory).absoluteFilePath(value("debug_working_directory"));
}

QStringList ProjectProgram::commandArguments() const
{
    return value("debug_command_arguments").split(u' ', Qt::SkipEmptyParts);
}

const char* ProjectProgram::loadFileType(const Path& path) const
{
    const QString type = value("external_load_file_type");
    LoadFileFactory& factory = *LoadFileFactory::instance();
    for (const LoadFileTypeInfo& info : factory.types())
        if (type == QLatin1String(info.type))
            return info.type;
    return factory.detect(path.osPath().toLocal8Bit().constData());
}

void ProjectProgram::addLoadFile(TargetLoadFiles& files, const Path& path, bool isAdditional) const
{
    const QByteArray name = path.osPath().toLocal8Bit();
    LoadFileFactory& factory = *LoadFileFactory::instance();
    const char* const type = isAdditional ? factory.detect(name.constData()) : loadFileType(path);
    if (!type)
        throw HException("the format of " + name.toStdString() + " isn't known");
    files.owned.emplace_back(factory.create(name.constData(), type));
    LoadFileInterface& file = *files.owned.back();
    const QString address = isAdditional ? QString() : value("external_load_address");
    if (!address.isEmpty() && !file.hasLoadAddress()) {
        bool isNumber = false;
        file.setLoadAddress(address.toUInt(&isNumber, 0));
        if (!isNumber)
            throw HException("the load address " + address.toStdString() + " isn't a number");
    }
    files.list.add(&file, name.constData(), isAdditional);
}

void ProjectProgram::addAdditionalLoadFiles(TargetLoadFiles& files) const
{
    const QDir directory(m_project->projectDirectory());
    const QStringList names = buildSystem->stringListSetting(
        QString(), m_project, buildSystem->propertyClass("debug_additional_load_files"),
        m_configuration);
    for (const QString& name : names)
        addLoadFile(files, Path(directory.absoluteFilePath(name)), true);
}

void ProjectProgram::addLoadFiles(TargetLoadFiles& files) const
{
    addAdditionalLoadFiles(files);
    addLoadFile(files, executable(), false);
}
