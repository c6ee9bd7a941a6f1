#pragma once

#include "build/system/FileTimes.h"
#include "projects/macros/MacroSystem.h"
#include "projects/properties/PropertyClass.h"
#include "projects/solution/ProjectElement.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>
#include <span>
#include <vector>

class Builder;
struct BuildPropertyRow;

/// Bits of a build's mode.
enum BuildMode : unsigned {
    BuildClean = 1,     ///< remove outputs before the build step
    BuildForce = 2,     ///< treat everything as out of date
    BuildCleanOnly = 4, ///< run no tools
    BuildQuiet = 8,     ///< no messages for what is up to date
    BuildThisOnly = 16, ///< neither build nor count the children
    BuildChecking = 64  ///< the heading's word only
};

enum class BuildResult { NothingToDo, Built, Failed, Cancelled };

/// The layer of the build that knows no tools: which project comes first, in which configurations,
/// what is out of date, and how it ended. Elements are those of the open solution; directories and
/// outputs are absolute unless a function says otherwise.
class BuildSystem {
public:
    BuildSystem();
    virtual ~BuildSystem();
    BuildSystem(const BuildSystem&) = delete;
    BuildSystem& operator=(const BuildSystem&) = delete;

    /// Builds a solution, a project with its dependencies (`isProject`), or just the element. With
    /// `batch`, projects are built in each of their batch configurations instead.
    BuildResult build(ProjectElement* element, const QString& configuration, Builder* builder,
                      unsigned mode, bool batch, bool isProject);
    /// The number of steps that build() would announce.
    int buildJobCount(ProjectElement* element, const QString& configuration, unsigned mode,
                      bool batch, bool isProject);

    bool cancelled() const { return m_cancelled; }
    bool failed() const { return m_failed; }
    void setCancelled() { m_cancelled = true; }
    void setFailed() { m_failed = true; }

    /// The file that an #include names: a quoted one beside the including file, then in the user
    /// directories, and all in the system directories. Empty if there is none.
    virtual QString findIncludeFile(bool system, const QString& name, ProjectElement* element,
                                    const QString& configuration);
    /// What the build makes of an element; empty if nothing. Relative means as command lines show
    /// it: from the project's directory.
    virtual QString output(ProjectElement* element, const QString& configuration,
                           bool relative) = 0;
    /// The files that an element's output is made from.
    virtual void getDependencies(ProjectElement* element, const QString& configuration,
                                 QStringList& list) = 0;
    virtual MacroMap macros(ProjectElement* element, const QString& configuration);
    virtual bool canLoad(ProjectElement* project, const QString& configuration) = 0;
    virtual bool canCompile(ProjectElement* element, const QString& configuration) = 0;
    virtual bool mustCompile(ProjectElement* element, const QString& configuration) = 0;
    /// Runs the preprocessor on a file; the result stands beside it.
    virtual void preprocess(ProjectElement* element, const QString& configuration,
                            Builder* builder) = 0;
    /// Builds one element and what is below it; true if anything was rebuilt.
    virtual bool platformBuild(ProjectElement* element, const QString& configuration,
                               Builder* builder, unsigned mode) = 0;
    /// Adds to the macros of an element.
    virtual void addMacros(ProjectElement*, const QString&, MacroMap&) { }

    QString replaceMacros(ProjectElement* element, const QString& text,
                          const QString& configuration);
    QString settingForExpanded(ProjectElement* element, const PropertyClass* propertyClass,
                               const QString& configuration);
    QStringList replaceStringListMacros(ProjectElement* element, const QStringList& list,
                                        const QString& configuration);
    /// The entries of a list setting, each behind the prefix; one that holds ";" once it is
    /// expanded gives several.
    QStringList stringListSetting(const QString& prefix, ProjectElement* element,
                                  const PropertyClass* propertyClass, const QString& configuration,
                                  bool expand = true);

    /// A class by its save name; of the two named build_output_file_name the executable's. It is an
    /// error of the program to ask for one that isn't there.
    const PropertyClass* propertyClass(const char* name) const;
    /// The same, or null.
    const PropertyClass* findPropertyClass(const QString& name) const;
    const PropertyClass* libraryFileNameClass() const { return m_libraryFileName.get(); }
    /// All classes in the order in which they were added.
    const PropertyClassList& propertyClasses() const { return m_order; }

    /// The extensions of outputs, with the dot.
    virtual QString objectFileExtension() const = 0;
    virtual QString executableFileExtension() const = 0;
    virtual QString libraryFileExtension() const = 0;

protected:
    void addPropertyClasses(std::span<const BuildPropertyRow> rows);
    PropertyClass* changePropertyClass(const char* name);

    virtual int countJobs(ProjectElement* element, const QString& configuration, unsigned mode) = 0;

    QString setting(ProjectElement* element, const char* name, const QString& configuration) const;
    QString expandedSetting(ProjectElement* element, const char* name,
                            const QString& configuration);
    /// The same for a file, fast in a build: files of a project differ in their own names only.
    QString expandForFile(ProjectElement* file, const char* name, const QString& configuration);
    /// True if the setting reads "Yes".
    bool yes(ProjectElement* element, const char* name, const QString& configuration) const;

    /// False, with the reason told unless quiet, if an input is missing or newer than the output.
    bool upToDate(const QString& directory, const QString& output, FileTime outputTime,
                  const QStringList& inputs, Builder* builder, bool quiet);
    /// The absolute path and time of a file; false, told unless quiet, if it isn't there.
    bool exists(const QString& directory, const QString& name, QString& path, FileTime& time,
                Builder* builder, bool quiet);
    void cleanFile(const QString& path, bool quiet, Builder* builder);
    /// Whether a project was built in this build, and then if anything was rebuilt.
    bool justBuilt(const ProjectElement* element, const QString& configuration,
                   bool& rebuilt) const;
    bool stopped() const { return m_failed || m_cancelled; }

    static constexpr quint64 NoBuild = 0;
    /// A number of its own for each build; NoBuild outside of builds.
    quint64 currentBuild() const { return m_inBuild ? m_buildNumber : NoBuild; }

    /// Times of files as seen in this build.
    FileTimes m_fileTimes;

private:
    struct BuiltStruct {
        const ProjectElement* element;
        QString configuration;
        bool rebuilt;
    };

    bool solutionBuild(ProjectElement* solution, const QString& configuration, Builder* builder,
                       unsigned mode, bool batch);
    bool projectBuild(ProjectElement* project, const QString& configuration, Builder* builder,
                      unsigned mode, bool batch);
    bool projectBuildIn(ProjectElement* project, const QString& configuration, Builder* builder,
                        unsigned mode);
    bool buildAlone(ProjectElement* element, const QString& configuration, Builder* builder,
                    unsigned mode);
    int solutionBuildJobCount(ProjectElement* solution, const QString& configuration, unsigned mode,
                              bool batch);
    int projectBuildJobCount(ProjectElement* project, const QString& configuration, unsigned mode,
                             bool batch);
    int projectJobCountIn(ProjectElement* project, const QString& configuration, unsigned mode);
    bool isExcluded(ProjectElement* project, const QString& configuration) const;
    void reportCircle(const ProjectElement* project, Builder* builder);
    void displayProjectConfiguration(ProjectElement* element, const QString& configuration,
                                     Builder* builder, unsigned mode);
    /// The macros of a project or solution, before those of a file.
    MacroMap baseMacros(ProjectElement* element, const QString& configuration);

    bool m_cancelled = false;
    bool m_failed = false;
    std::vector<BuiltStruct> m_built;
    /// The projects whose dependencies are being built, outermost first.
    std::vector<const ProjectElement*> m_building;

    std::vector<std::unique_ptr<PropertyClass>> m_classes;
    std::unique_ptr<PropertyClass> m_libraryFileName;
    PropertyClassList m_order;
    QHash<QString, PropertyClass*> m_byName;

    /// The macros made last in a build: files of a project share most of theirs.
    struct MacroCache {
        const ProjectElement* element = nullptr;
        QString configuration;
        quint64 changes = 0;
        MacroMap macros;
        const ProjectElement* base = nullptr; ///< the element that the rest comes from
    };
    bool m_inBuild = false;
    quint64 m_buildNumber = NoBuild;
    MacroCache m_baseCache;
    MacroCache m_elementCache;

    /// A setting of files that was expanded last in a build, up to the macros of the file.
    struct Pattern {
        const ProjectElement* base = nullptr;
        const char* name = nullptr;
        QString configuration;
        quint64 changes = 0;
        QString text;
    };
    QString makePattern(ProjectElement* file, ProjectElement* base, const char* name,
                        const QString& configuration);
    void finishMacros(ProjectElement* element, const QString& configuration, MacroMap& macros,
                      bool extensionsStand);
    Pattern m_pattern;
};

/// The one in use; null until its owner sets it.
extern BuildSystem* buildSystem;
