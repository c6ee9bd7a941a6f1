#pragma once

#include "projects/templates/ProjectTemplates.h"

#include <memory>
#include <vector>

/// One kind of project that a user can make.
class NewProjectTemplate {
public:
    virtual ~NewProjectTemplate() = default;

    /// Fills a project that was just made.
    virtual void finishProject(ProjectElement* solution, ProjectElement* project) const = 0;
    virtual QString caption() const = 0;
    virtual QString cpuName() const = 0;
    virtual QString cpuManufacturer() const = 0;
    virtual QString boardName() const = 0;
    virtual QString boardManufacturer() const = 0;
    virtual QString projectType() const = 0;
    virtual QString projectDescription() const = 0;

    /// An empty project in the solution; the location is absolute or from the solution's directory.
    virtual ProjectElement* createProject(ProjectElement* solution, const QString& name,
                                          const QString& location) const;
};

/// From a "project" element of the templates file.
class NewDomProjectTemplate : public NewProjectTemplate {
public:
    NewDomProjectTemplate(const ProjectTemplates& templates, const XMLElement& description)
        : m_templates(templates),
          m_description(description)
    {
    }

    void finishProject(ProjectElement* solution, ProjectElement* project) const override;
    QString caption() const override { return text("caption"); }
    QString cpuName() const override { return text("cpu_name"); }
    /// "(Standard Projects)" for a template of no particular device.
    QString cpuManufacturer() const override;
    /// "Generic " and the kind of device for a template of no particular board.
    QString boardName() const override;
    QString boardManufacturer() const override { return text("board_manufacturer"); }
    QString projectType() const override { return text("type"); }
    QString projectDescription() const override { return text("description"); }

private:
    QString text(const char* attribute) const { return m_description.attribute(attribute); }

    const ProjectTemplates& m_templates;
    const XMLElement& m_description;
};

/// A project without anything in it.
class NewEmptyProjectTemplate : public NewProjectTemplate {
public:
    explicit NewEmptyProjectTemplate(const QString& projectType) : m_projectType(projectType) { }

    void finishProject(ProjectElement*, ProjectElement*) const override { }
    QString caption() const override;
    QString cpuName() const override { return {}; }
    QString cpuManufacturer() const override;
    QString boardName() const override { return {}; }
    QString boardManufacturer() const override { return {}; }
    QString projectType() const override { return m_projectType; }
    QString projectDescription() const override;

private:
    QString m_projectType;
};

/// What the dialog for a new project offers, and what it does.
class NewProjectModel {
public:
    /// Without templates, for a file that can't be read, there are the empty projects.
    explicit NewProjectModel(const QString& templatesFile);

    const std::vector<std::unique_ptr<NewProjectTemplate>>& templates() const { return m_offered; }

    /// Why a project of that name can't be made, or an empty text.
    static QString problemWithName(const ProjectElement* solution, const QString& name);
    /// The project, or null with the problem told.
    static ProjectElement* startProjectCreation(const NewProjectTemplate& chosen,
                                                ProjectElement* solution, const QString& name,
                                                const QString& location, QString& problem);

private:
    void addCannedProjects();

    ProjectTemplates m_templates;
    std::vector<std::unique_ptr<NewProjectTemplate>> m_offered;
};
