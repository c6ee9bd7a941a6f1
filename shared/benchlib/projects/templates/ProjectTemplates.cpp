#include "projects/templates/ProjectTemplates.h"

#include "projects/macros/MacroSystem.h"
#include "projects/settings/EnvironmentSettings.h"
#include "projects/solution/ProjectSystem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

bool wantsExpansion(const XMLElement& element)
{
    return element.attribute("expand").compare(u"yes", Qt::CaseInsensitive) == 0;
}

QString configurationOf(const XMLElement& element)
{
    return element.attribute("configuration", CommonConfiguration);
}

} // namespace

QString ProjectTemplates::projectTemplatesFile()
{
    if (!environment || !macroSystem)
        return {};
    return MacroSystem::replaceMacros(macroSystem->systemMacros(),
                                      environment->projectTemplates->toString());
}

bool ProjectTemplates::load(const QString& path)
{
    m_names.clear();
    m_templates.clear();
    m_configurations.clear();
    if (path.isEmpty())
        return false;
    // Attributes keep their macros: those of the project are known when it is made.
    if (!XMLPP2::load(path, QString(), false))
        return false;
    for (const XMLElement& element : documentElement()->children()) {
        if (element.hasTag("project")) {
            const QString name = element.attribute("template_name");
            if (!m_templates.contains(name))
                m_names << name;
            m_templates.insert(name, &element);
        } else if (element.hasTag("configurations")) {
            for (const XMLElement& definition : element.children())
                m_configurations.insert(definition.attribute("name"), &definition);
        }
    }
    return true;
}

void ProjectTemplates::createProjectFromTemplate(ProjectElement* solution, ProjectElement* project,
                                                 const XMLElement& description) const
{
    projectSystem->setProperty(project, u"project_type"_s, CommonConfiguration,
                               description.attribute("type"), false);
    projectSystem->useGroupFileOf(project, CommonConfiguration);
    createFromTemplate({solution, project, project}, description);
}

void ProjectTemplates::createFromTemplate(const Place& place, const XMLElement& description) const
{
    for (const XMLElement& element : description.children()) {
        const QString name = element.attribute("name");
        if (element.hasTag("folder")) {
            ProjectElement* folder = projectSystem->findFolder(place.parent, name);
            if (!folder)
                folder =
                    projectSystem->createFolder(place.parent, name, element.attribute("filter"));
            createFromTemplate({place.solution, place.project, folder}, element);
        } else if (element.hasTag("file")) {
            createFile(place, element);
        } else if (element.hasTag("property")) {
            applyProperty(place, element);
        } else if (element.hasTag("propertygroup")) {
            applyPropertyGroup(place, element);
        } else if (element.hasTag("configuration")) {
            createConfiguration(place.solution, place.project, name);
        }
    }
}

void ProjectTemplates::createFile(const Place& place, const XMLElement& file) const
{
    const QString name = projectSystem->expandBuildMacros(place.project, file.attribute("name"),
                                                          CommonConfiguration);
    if (file.hasAttribute("source")) {
        const QString source = projectSystem->expandBuildMacros(
            place.project, file.attribute("source"), CommonConfiguration);
        const QString target = QDir(place.project->projectDirectory()).absoluteFilePath(name);
        QFile in(source);
        QFile out(target);
        if (!in.open(QIODevice::ReadOnly)) {
            qWarning("project template: can't read %s", qUtf8Printable(source));
        } else if (!out.exists()) {
            QByteArray bytes = in.readAll();
            if (wantsExpansion(file))
                bytes = projectSystem
                            ->expandBuildMacros(place.project, QString::fromUtf8(bytes),
                                                CommonConfiguration)
                            .toUtf8();
            QDir().mkpath(QFileInfo(target).path());
            if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size())
                qWarning("project template: can't write %s", qUtf8Printable(target));
        }
    }
    ProjectElement* made = projectSystem->addFile(place.parent, name);
    if (file.hasAttribute("filter"))
        projectSystem->setProperty(made, u"filter"_s, CommonConfiguration, file.attribute("filter"),
                                   false);
    createFromTemplate({place.solution, place.project, made}, file);
}

void ProjectTemplates::applyProperty(const Place& place, const XMLElement& property) const
{
    QString value = property.attribute("value");
    if (wantsExpansion(property))
        value = projectSystem->expandBuildMacros(place.project, value, configurationOf(property));
    projectSystem->setProperty(place.parent, property.attribute("name"), configurationOf(property),
                               value, false);
}

void ProjectTemplates::applyPropertyGroup(const Place& place, const XMLElement& group) const
{
    const PropertyValueGroupClass* groupClass =
        projectSystem->propertyGroups().getGroupClass(group.attribute("name"));
    if (groupClass)
        PropertyValueGroupValue(groupClass, place.parent, configurationOf(group))
            .setPropertyValue(group.attribute("value"), false);
}

void ProjectTemplates::createConfiguration(ProjectElement* solution, ProjectElement* project,
                                           const QString& name) const
{
    const XMLElement* definition = findConfiguration(name);
    if (!definition)
        return;
    ProjectElement* configuration = projectSystem->createConfiguration(solution, name);
    for (const XMLElement& property : definition->children()) {
        if (!property.hasTag("property") || !property.hasAttribute("name")
            || !property.hasAttribute("value"))
            continue;
        const QString propertyName = property.attribute("name");
        const QString value = property.attribute("value");
        // What the user has set in a configuration that was there stays.
        if (configuration->hasAttribute(propertyName))
            continue;
        configuration->setAttribute(propertyName, value);
        if (propertyName != u"inherited_configurations")
            continue;
        for (const QString& inherited : MacroSystem::stringListFromString(value))
            createConfiguration(solution, project, inherited);
    }
    solution->updateInheritenceMap();
}
