#pragma once

#include "projects/solution/ProjectElement.h"
#include "projects/xml/XMLPP2.h"

#include <QMap>
#include <QStringList>

/// The descriptions that new projects and configurations start from: folders, files, properties and
/// configurations.
class ProjectTemplates : private XMLPP2 {
public:
    /// The file that the setting Environment/General/Project Templates names.
    static QString projectTemplatesFile();

    /// False, with errorText() and errorLine() set and no templates, for a file that can't be read.
    bool load(const QString& path);
    using XMLPP2::errorLine;
    using XMLPP2::errorText;

    /// In the order of the file.
    const QStringList& listTemplates() const { return m_names; }
    /// Null if there is none of that name.
    const XMLElement* findTemplate(const QString& name) const { return m_templates.value(name); }
    const XMLElement* findConfiguration(const QString& name) const
    {
        return m_configurations.value(name);
    }

    /// Fills a project, made but empty, with what the template describes. Files with a source are
    /// made in the project's directory; one that is there already is kept.
    void createProjectFromTemplate(ProjectElement* solution, ProjectElement* project,
                                   const XMLElement& description) const;
    /// Makes the configuration at the solution, with the properties of its definition.
    void createConfiguration(ProjectElement* solution, ProjectElement* project,
                             const QString& name) const;

private:
    struct Place {
        ProjectElement* solution;
        ProjectElement* project;
        ProjectElement* parent;
    };

    void createFromTemplate(const Place& place, const XMLElement& description) const;
    void createFile(const Place& place, const XMLElement& file) const;
    void applyProperty(const Place& place, const XMLElement& property) const;
    void applyPropertyGroup(const Place& place, const XMLElement& group) const;

    QStringList m_names;
    QMap<QString, const XMLElement*> m_templates;
    QMap<QString, const XMLElement*> m_configurations;
};
