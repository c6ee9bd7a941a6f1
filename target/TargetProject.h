#pragma once

#include <QString>

#include <functional>

class ProjectElement;
class PropertyClass;

/// The project and configuration that a target is used with, as far as targets ask about them.
/// Without a project, or with an empty configuration, every answer is the null string.
class TargetProject {
public:
    /// How a property class is found by its name; null for an unknown one.
    using PropertyClassFinder = std::function<const PropertyClass*(const QString& name)>;
    /// The build system's classes stand above this layer: their owner tells how to find them.
    static void setPropertyClassFinder(PropertyClassFinder finder);
    /// Asks the finder, then the property groups of the solution.
    static const PropertyClass* findPropertyClass(const QString& name);

    TargetProject() = default;
    TargetProject(ProjectElement* project, const QString& configuration)
        : m_project(project),
          m_configuration(configuration)
    {
    }

    bool isSet() const { return m_project != nullptr && !m_configuration.isEmpty(); }
    ProjectElement* project() const { return m_project; }
    const QString& configuration() const { return m_configuration; }

    /// The resolved setting, with its macros expanded or raw.
    QString value(const PropertyClass* propertyClass, bool expand) const;
    /// The same by name, expanded; the null string for an unknown name.
    QString value(const char* name) const;
    /// The path of the project's first file of that type, such as "Target Script".
    QString fileOfType(const QString& type) const;

private:
    ProjectElement* m_project = nullptr;
    QString m_configuration;
};
