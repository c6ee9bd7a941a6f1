#include "projects/templates/NewProjectTemplate.h"

#include "projects/solution/ProjectSystem.h"

using namespace Qt::Literals::StringLiterals;

namespace {

const QString StandardProjects = u"(Standard Projects)"_s;

} // namespace

ProjectElement* NewProjectTemplate::createProject(ProjectElement* solution, const QString& name,
                                                  const QString& location) const
{
    return projectSystem->createProject(solution, name, projectType(), location);
}

void NewDomProjectTemplate::finishProject(ProjectElement* solution, ProjectElement* project) const
{
    m_templates.createProjectFromTemplate(solution, project, m_description);
}

QString NewDomProjectTemplate::cpuManufacturer() const
{
    return m_description.hasAttribute("cpu_name") ? text("cpu_manufacturer") : StandardProjects;
}

QString NewDomProjectTemplate::boardName() const
{
    return m_description.hasAttribute("board_name") ? text("board_name")
                                                    : u"Generic "_s + text("cpu_generic_name");
}

QString NewEmptyProjectTemplate::caption() const
{
    return u"An empty project of the type "_s + m_projectType;
}

QString NewEmptyProjectTemplate::cpuManufacturer() const { return StandardProjects; }

QString NewEmptyProjectTemplate::projectDescription() const
{
    return u"A project without files."_s;
}

NewProjectModel::NewProjectModel(const QString& templatesFile)
{
    if (m_templates.load(templatesFile))
        addCannedProjects();
    for (const QString& type : projectSystem->propertyClass(u"project_type"_s)->enumerates())
        m_offered.push_back(std::make_unique<NewEmptyProjectTemplate>(type));
}

void NewProjectModel::addCannedProjects()
{
    for (const QString& name : m_templates.listTemplates())
        m_offered.push_back(
            std::make_unique<NewDomProjectTemplate>(m_templates, *m_templates.findTemplate(name)));
}

QString NewProjectModel::problemWithName(const ProjectElement* solution, const QString& name)
{
    if (name.isEmpty())
        return u"PLease enter a name for the project"_s;
    if (solution->projects().contains(name))
        return u"PLease select another project name as '%1' already exists in the solution"_s.arg(
            name);
    return {};
}

ProjectElement* NewProjectModel::startProjectCreation(const NewProjectTemplate& chosen,
                                                      ProjectElement* solution, const QString& name,
                                                      const QString& location, QString& problem)
{
    problem = problemWithName(solution, name);
    if (!problem.isEmpty())
        return nullptr;
    ProjectElement* project = chosen.createProject(solution, name, location);
    chosen.finishProject(solution, project);
    return project;
}
