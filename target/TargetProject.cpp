#include "target/TargetProject.h"

#include "projects/properties/PropertyClass.h"
#include "projects/solution/ProjectSystem.h"

namespace {

TargetProject::PropertyClassFinder& finder()
{
    static TargetProject::PropertyClassFinder function;
    return function;
}

} // namespace

void TargetProject::setPropertyClassFinder(PropertyClassFinder function)
{
    finder() = std::move(function);
}

const PropertyClass* TargetProject::findPropertyClass(const QString& name)
{
    const PropertyClass* found = finder() ? finder()(name) : nullptr;
    if (found == nullptr && projectSystem != nullptr)
        found = projectSystem->propertyGroups().getGroupClass(name);
    return found;
}

QString TargetProject::value(const PropertyClass* propertyClass, bool expand) const
{
    if (!isSet() || propertyClass == nullptr || projectSystem == nullptr)
        return {};
    const QString raw = projectSystem->settingFor(m_project, propertyClass, m_configuration);
    return expand ? projectSystem->expandBuildMacros(m_project, raw, m_configuration) : raw;
}

QString TargetProject::value(const char* name) const
{
    return isSet() ? value(findPropertyClass(QLatin1String(name)), true) : QString();
}

QString TargetProject::fileOfType(const QString& type) const
{
    if (!isSet() || projectSystem == nullptr)
        return {};
    for (const ProjectElement* file : projectSystem->sourceFiles(m_project))
        if (projectSystem->getFileType(file) == type)
            return file->path().osPath();
    return {};
}
