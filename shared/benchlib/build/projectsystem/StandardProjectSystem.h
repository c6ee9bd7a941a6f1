#pragma once

#include "projects/solution/ProjectSystem.h"

class BuildSystem;

/// The project system of builds with compilers and linkers: what files are, and which of the
/// build's properties a user sees at an element.
///
/// Each append operation adds to the rows of the properties window what its level knows; a class
/// that comes twice keeps its first place.
class StandardProjectSystem : public ProjectSystem {
public:
    StandardProjectSystem();

    /// Where the property classes come from; set before any settings are asked for.
    void setBuildSystem(BuildSystem* buildSystem) { m_buildSystem = buildSystem; }

    PropertyClassList applicableSettingsFor(ProjectElement* element,
                                            const QString& configuration) override;
    QString getFileType(const ProjectElement* element) const override;
    void useGroupFileOf(ProjectElement* element, const QString& configuration) override;

    virtual void appendCompilerProperties(PropertyClassList& list);
    virtual void appendCCompilerProperties(PropertyClassList& list);
    virtual void appendCppCompilerProperties(PropertyClassList& list);
    virtual void appendAssemblerProperties(PropertyClassList& list);
    virtual void appendLinkerProperties(PropertyClassList& list);
    virtual void appendArchiverProperties(PropertyClassList& list);
    virtual void appendBasicCompilerProperties(PropertyClassList&) { }
    virtual void appendTargetProperties(PropertyClassList& list);
    virtual void appendSolutionProperties(PropertyClassList& list);
    virtual void appendDefaultProjectValues(PropertyClassList&) { }
    virtual void appendProjectProperties(PropertyClassList& list, const QString& projectType);
    /// The extension of generated assembly, without a dot.
    virtual QString assemblyCodeFileExtension() const { return {}; }

protected:
    /// Adds the build's classes of these names.
    void append(PropertyClassList& list, std::initializer_list<const char*> names) const;

private:
    QString xmlFileType(const ProjectElement* element) const;
    void appendFileProperties(PropertyClassList& list, ProjectElement* file);
    void appendPropertyGroups(PropertyClassList& list, ProjectElement* element,
                              const QString& configuration);

    BuildSystem* m_buildSystem = nullptr;
    /// What XML files are, by path and time of change: asking means reading.
    struct XmlFileType {
        QDateTime time;
        QString type;
    };
    mutable QHash<QString, XmlFileType> m_xmlFileTypes;
};
