#pragma once

#include "projects/solution/ProjectElement.h"
#include "projects/solution/PropertyValueGroups.h"
#include "projects/solution/SolutionErrors.h"
#include "projects/solution/SolutionHandlers.h"

#include <QHash>
#include <QObject>

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

class Builder;
class XMLDocument;

/// The solution that is open: its tree, its file, and all questions about it.
///
/// Elements are pointers into the tree, which the system owns; a null element stands for none.
class ProjectSystem : public QObject {
    Q_OBJECT
public:
    /// What configurations() lists.
    enum ConfigurationFlag : unsigned {
        WithCommon = 1, ///< "Common" first
        WithHidden = 2,
        WithPublic = 4 ///< public ones of this platform
    };

    ProjectSystem();
    ~ProjectSystem() override;

    virtual ProjectElement* createSolution(const QString& directory, const QString& name);
    virtual ProjectElement* createProject(ProjectElement* solution, const QString& name,
                                          const QString& type, const QString& directory);
    /// The classes of the settings that a user sees at an element.
    virtual PropertyClassList applicableSettingsFor(ProjectElement* element,
                                                    const QString& configuration);
    /// Where new files of an element are made.
    virtual QString defaultFileLocation(const ProjectElement* element) const;
    /// What a file is, such as "C" or "Library"; empty for a file that takes no part in a build.
    virtual QString getFileType(const ProjectElement* element) const;
    virtual QString objectFileExtension() const { return {}; }
    virtual QString libraryFileExtension() const { return {}; }
    virtual QString executableFileExtension() const { return {}; }
    /// Brings the tree of a file of an older version up to date.
    virtual void munge(ProjectElement* element);
    /// Makes the file of property groups that the element's settings name the one in use.
    virtual void useGroupFileOf(ProjectElement*, const QString&) { }

    // Properties

    /// The value of a property at an element: the first hit on the way up the tree, at each level
    /// in the configuration, in those that it inherits, and in "Common"; of a StringList, all hits
    /// joined by ";"; else the default.
    QString settingFor(const ProjectElement* element, const PropertyClass* propertyClass,
                       const QString& configuration,
                       PropertyInheritanceInformation* record = nullptr) const;
    /// Only what stands at this element under this configuration.
    QString specificSettingFor(const ProjectElement* element, const PropertyClass* propertyClass,
                               const QString& configuration) const;
    /// The configuration that settingFor's value comes from; empty for the default.
    QString configurationUsedFor(const ProjectElement* element, const PropertyClass* propertyClass,
                                 const QString& configuration) const;
    QStringList getInheritedConfigurations(const ProjectElement* element,
                                           const QString& configuration) const;
    void setInheritedConfigurations(ProjectElement* element, const QString& configuration,
                                    const QStringList& inherited);
    /// Makes the configuration at the element if it has none of that name. By class, a property
    /// that isn't per configuration goes to "Common".
    void setProperty(ProjectElement* element, const PropertyClass* propertyClass,
                     const QString& configuration, const QString& value, bool transaction);
    void setProperty(ProjectElement* element, const QString& name, const QString& configuration,
                     const QString& value, bool transaction);
    void removeProperty(ProjectElement* element, const PropertyClass* propertyClass,
                        const QString& configuration);
    void removeProperty(ProjectElement* element, const QString& name, const QString& configuration);
    /// Sorted names of the configurations at the element and above, by ConfigurationFlag.
    QStringList configurations(const ProjectElement* element, unsigned flags) const;
    /// False exactly if a change of the property that counts at this element is newer than `since`.
    bool upToDate1(ProjectElement* element, const PropertyClass* propertyClass,
                   const QString& configuration, const QDateTime& since) const;
    /// As upToDate1, and tells the builder the reason unless quiet.
    bool upToDate(ProjectElement* element, const PropertyClass* propertyClass,
                  const QString& configuration, const QDateTime& since, Builder* builder,
                  bool quiet) const;
    /// True if any property was changed after the solution was loaded.
    bool changedSinceLoad() const { return ProjectElement::changeCount() != m_changesAtLoad; }
    QString platform(const ProjectElement* element) const;
    PropertyValueGroups& propertyGroups() { return m_groups; }

    /// The rows of the properties window.
    PropertyValueList settingsFor(ProjectElement* element, const QString& configuration);
    /// For a file outside any project.
    PropertyValueList settingsFor(const Path& path) const;
    /// Empty or "Default" stands for the system's codec.
    QString getFileCodec(const ProjectElement* element) const;
    /// A class that this system defines, by name; null for any other.
    const PropertyClass* propertyClass(const QString& name) const;

    // The tree

    bool haveSolution() const { return m_root != nullptr; }
    ProjectElement* solutionElement() const { return m_root.get(); }
    /// All projects, those of imported solutions included, in the order of the tree.
    std::vector<ProjectElement*> solutionProjects() const;
    /// The root and the imported solutions, in the order of the tree.
    std::vector<ProjectElement*> solutionSolutions() const;
    int numProjects() const { return static_cast<int>(solutionProjects().size()); }
    ProjectElement* projectContaining(ProjectElement* element) const;
    ProjectElement* solutionContaining(ProjectElement* element) const;
    ProjectElement* findProject(const ProjectElement* element, const QString& name) const;
    /// Below the element, depth first.
    ProjectElement* findByName(ProjectElement* element, const QString& name) const;
    ProjectElement* findConfiguration(const ProjectElement* element, const QString& name) const;
    ProjectElement* findFolder(const ProjectElement* element, const QString& name) const;
    /// A file below the element by its stored name.
    ProjectElement* findFile(ProjectElement* element, const QString& fileName) const;
    ProjectElement* findAbsoluteFile(ProjectElement* element, const Path& path) const;
    /// Expands macros, and takes a relative path from the element's project directory.
    ProjectElement* findRelativeFile(ProjectElement* element, const QString& path) const;
    bool containsFile(ProjectElement* element, const Path& path) const;
    std::vector<ProjectElement*> sourceFiles(ProjectElement* element) const;
    QString getGlobalProjectName(const ProjectElement* project) const;
    /// Sorted global names of all projects.
    const QStringList& projectNames() const { return m_projectNames; }
    void updateProjectList();

    ProjectElement* createFolder(ProjectElement* parent, const QString& name,
                                 const QString& filter = {}, bool transaction = false);
    /// The configuration that is there already, if one is.
    ProjectElement* createConfiguration(ProjectElement* parent, const QString& name,
                                        bool transaction = false);
    /// To a project, the file goes into the first of its folders whose filter lists its extension.
    ProjectElement* addFile(ProjectElement* parent, const QString& fileName,
                            bool transaction = false);
    void setDynamicFolder(ProjectElement* folder, const QString& path, const QString& filter);
    /// Makes the folder's files those of its directory.
    void populateDynamicFolder(ProjectElement* folder);
    /// Throws SolutionLoadError.
    ProjectElement* importSolution(ProjectElement* parent, const QString& fileName,
                                   ProjectFileNotFoundErrorHandler* handler);
    void renameElement(ProjectElement* element, const QString& name);
    void removeElement(ProjectElement* element, bool transaction = false);
    void removeConfiguration(ProjectElement* element, const QString& name);
    /// A copy of the element and all below it, in no tree.
    std::unique_ptr<ProjectElement> clone(const ProjectElement* element) const;
    void setBatchBuildConfigurations(ProjectElement* element, const QString& configuration,
                                     const QStringList& list);
    /// The stored list, or all public configurations if there is none.
    QStringList getBatchBuildConfigurations(const ProjectElement* element,
                                            const QString& configuration) const;

    // Dependencies

    /// Names that can't be resolved are dropped.
    std::vector<ProjectElement*> directlyDependsOn(const ProjectElement* project,
                                                   const QString& configuration) const;
    /// All projects that this one needs, each once; the project itself only if it is in a circle.
    std::vector<ProjectElement*> dependsOn(const ProjectElement* project,
                                           const QString& configuration) const;
    /// Dependencies first, the project last. A circle is cut where it closes.
    std::vector<ProjectElement*> buildOrder(ProjectElement* project,
                                            const QString& configuration) const;

    // Files

    /// Replaces the open solution. Throws SolutionLoadError; no solution is open then. Handlers may
    /// be null.
    void loadSolution(const QString& path, ProjectFileNotFoundErrorHandler* notFound,
                      TemplateNotFoundErrorHandler* templates);
    void closeSolution();
    /// Writes the solutions that have changed. Throws SolutionSaveError.
    void save(ProjectFileSaveErrorHandler* handler);
    bool saveProjectFile(ProjectElement* solution);
    bool saveProjectFile(ProjectElement* solution, const Path& path);
    bool modified() const;
    bool isModified(const ProjectElement* element, bool deep) const;
    void clearModified(ProjectElement* element) const;
    bool modifiedOnDisk() const;
    void updateLoadDateTime();

    void startTransaction();
    void commitTransaction();
    void rollBackTransaction();

    /// What templates expand values with: the build's macros of an element and configuration.
    using MacroExpander =
        std::function<QString(ProjectElement*, const QString& text, const QString& configuration)>;
    void setMacroExpander(MacroExpander expander) { m_macroExpander = std::move(expander); }
    QString expandBuildMacros(ProjectElement* element, const QString& text,
                              const QString& configuration) const;

signals:
    void solutionLoaded();
    void fileSaved(const Path& path);
    void propertiesChanged(ProjectElement* node);

protected:
    /// Adds a class of this system to what propertyClass() finds.
    PropertyClass* addClass(std::unique_ptr<PropertyClass> propertyClass);

private:
    /// What a load has found and still has to do.
    struct Loading;

    std::unique_ptr<ProjectElement> loadProjectFile(const QString& path, const QString& base,
                                                    ProjectFileNotFoundErrorHandler* handler,
                                                    Loading& loading);
    std::unique_ptr<ProjectElement> domToElement(const QString& directory, const QString& path,
                                                 const XMLElement& xml,
                                                 ProjectFileNotFoundErrorHandler* handler,
                                                 Loading& loading, int depth);
    void createProjectsFromTemplates(const Loading& loading, TemplateNotFoundErrorHandler* handler);
    XMLElement* elementToDom(XMLDocument& document, const ProjectElement& element,
                             bool isRoot) const;
    QMap<QString, ProjectElement*> updateProjectListOf(ProjectElement* solution);
    void addInformation(PropertyValueList& list, const char* name, const QString& value) const;

    std::unique_ptr<ProjectElement> m_root;
    QStringList m_projectNames;
    QHash<QString, QDateTime> m_loadTimes; ///< by absolute path of a solution file
    quint64 m_changesAtLoad = 0;
    PropertyValueGroups m_groups;
    std::unique_ptr<PropertyClass> m_dynamicFolderFilter;
    std::vector<std::unique_ptr<PropertyClass>> m_ownClasses;
    QHash<QString, const PropertyClass*> m_classes;
    MacroExpander m_macroExpander;
};

/// The one in use; null until its owner sets it.
extern ProjectSystem* projectSystem;
