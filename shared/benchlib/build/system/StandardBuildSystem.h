#pragma once

#include "build/process/BuildCommands.h"
#include "build/system/BuildSystem.h"
#include "build/system/DependencyCache.h"
#include "build/system/StagedPackages.h"

#include <memory>
#include <optional>

class MemoryMap;

/// The layer of the build that knows compilers and linkers as steps: what each element turns into,
/// what decides that it is current, and in which order a step's commands run.
class StandardBuildSystem : public BuildSystem, public BuildCommands {
public:
    enum BuildAction {
        actionNone = 0,
        actionExcluded = 1,
        actionCompileC = 2,
        actionCompileCpp = 3,
        actionCompileForth = 5,
        actionCompileBasic = 6,
        actionAssemble = 7,
        actionExternal = 8,
        actionLink = 10,
        actionArchive = 11,
        actionStage = 12,
        actionCombine = 13
    };

    /// The project system must be there already.
    StandardBuildSystem();
    ~StandardBuildSystem() override;

    BuildAction buildAction(ProjectElement* element, const QString& configuration);

    QString output(ProjectElement* element, const QString& configuration, bool relative) override;
    void getDependencies(ProjectElement* element, const QString& configuration,
                         QStringList& list) override;
    bool canLoad(ProjectElement* project, const QString& configuration) override;
    bool canCompile(ProjectElement* element, const QString& configuration) override;
    bool mustCompile(ProjectElement* element, const QString& configuration) override;
    bool platformBuild(ProjectElement* element, const QString& configuration, Builder* builder,
                       unsigned mode) override;

    /// What one step makes: the output as the command line shows it and as an absolute path, and
    /// its inputs as the command line shows them.
    struct Step {
        ProjectElement* element = nullptr;
        QString configuration;
        BuildAction action = actionNone;
        QString output;
        QString absoluteOutput;
        QStringList inputs;
    };
    /// Runs the tool or tools of a step.
    virtual void createCommandFor(const Step& step, Builder* builder) = 0;
    /// True unless a setting that goes into the step's command has changed since the time.
    virtual bool commandUpToDate(ProjectElement* element, const QString& configuration,
                                 FileTime outputTime, BuildAction action, Builder* builder,
                                 bool quiet);
    /// The files that an object was made from, as its compiler recorded them.
    virtual QStringList getObjectFileDependencies(const QString& objectPath) = 0;
    /// Adds options behind the generated ones; false cancels the step without a message.
    virtual bool appendBuildOptions(ProjectElement* element, const QString& configuration,
                                    BuildAction action, QStringList& command, Builder* builder) = 0;
    virtual void appendPreprocessorOptions(ProjectElement* element, const QString& configuration,
                                           QStringList& command) = 0;

    /// BuildCommands: carries out "cp", "chmod", "rm" and "docgen" without a process, with the
    /// error text set on failure; "kxc" and "kmh" become the product's own programs.
    bool builtinCommand(const QString& directory, QStringList& command,
                        QString& errorText) override;
    bool isProject(const ProjectElement* element) const override { return element->isProject(); }
    bool cancelled() const override { return BuildSystem::cancelled(); }
    void setCancelled() override { BuildSystem::setCancelled(); }
    void setFailed() override { BuildSystem::setFailed(); }
    /// The line that an exported build has for a built-in command, empty for none; false for a
    /// built-in that has no such form. Other commands are left as they are.
    static bool getExportableBuiltinCommand(const QStringList& command, QString& text);

    /// The file that a link is placed by, expanded: one of the project's own files, else the
    /// setting's. False if there is none.
    bool useMemoryMapFileForLink(ProjectElement* element, const QString& configuration,
                                 QString& path);
    bool useSectionPlacementFileForLink(ProjectElement* element, const QString& configuration,
                                        QString& path);
    /// The file loaded, or null with `path` telling which.
    MemoryMap* getMemoryMapFileForLink(ProjectElement* element, const QString& configuration,
                                       QString& path);
    MemoryMap* getSectionPlacementFileForLink(ProjectElement* element, const QString& configuration,
                                              QString& path);
    /// The first file in the subtree of that kind, or null.
    ProjectElement* findFileOfType(ProjectElement* element, const QString& kind);

protected:
    int countJobs(ProjectElement* element, const QString& configuration, unsigned mode) override;

    /// True if none of these classes has changed since the time, checked in their order.
    bool optionsUpToDate(const PropertyClassList& classes, ProjectElement* element,
                         const QString& configuration, FileTime time, Builder* builder, bool quiet);
    /// The classes of these names, in this order.
    PropertyClassList classesOf(std::initializer_list<const char*> names) const;
    /// The file beside an output with the same base name and another extension.
    static QString besideOutput(const QString& output, const QString& extension);
    /// Hands one command to the builder, as it stands between init and doit.
    void runCommand(Builder* builder, const QString& directory, const QStringList& command,
                    const QStringList& outputFiles);

private:
    struct Context {
        QString configuration;
        Builder* builder;
        unsigned mode;
        bool quiet() const { return mode & BuildQuiet; }
        bool clean() const { return mode & BuildClean; }
        bool runTools() const { return !(mode & BuildCleanOnly) && builder; }
    };

    /// What a build finds out about an element once.
    struct ElementFacts {
        std::optional<BuildAction> action;
        std::optional<QString> output;
    };
    /// The facts of one build, in one configuration, as long as no property changes.
    struct Facts {
        quint64 build = NoBuild;
        quint64 changes = 0;
        QString configuration;
        QHash<const ProjectElement*, ElementFacts> elements;
    };
    ElementFacts& factsOf(const ProjectElement* element, const QString& configuration);
    /// What this build has found for the element before, or what `find` finds now.
    template <typename Value, typename Find>
    Value foundOnce(const ProjectElement* element, const QString& configuration,
                    std::optional<Value> ElementFacts::*fact, Find find);
    BuildAction findAction(ProjectElement* element, const QString& configuration);

    bool platformBuild1(ProjectElement* element, const Context& context);
    bool buildCompile(ProjectElement* element, const Context& context, BuildAction action,
                      bool forced);
    bool buildLink(ProjectElement* project, const Context& context, bool forced);
    bool buildArchive(ProjectElement* project, const Context& context, bool forced);
    bool buildExternal(ProjectElement* project, const Context& context);
    bool buildStage(ProjectElement* file, const Context& context, bool forced);
    void finishStage(ProjectElement* project, const Context& context, bool forced);
    bool buildCombine(ProjectElement* project, const Context& context, bool forced);

    QString dependencyFile(ProjectElement* project, const QString& configuration);
    QStringList dependenciesOf(const QString& objectPath, FileTime objectTime,
                               const QString& input);
    /// Inputs of a link, in order; `forced` is set when one of them was rebuilt in this build.
    QStringList linkInputs(ProjectElement* project, const QString& configuration, bool& forced);
    void findOutputs(ProjectElement* element, const QString& configuration, QStringList& list);
    void findRelativeInputs(ProjectElement* element, const QString& configuration,
                            QStringList& list);
    bool mapOutputFileUpToDate(ProjectElement* element, const QString& configuration,
                               const QString& output, Builder* builder, bool quiet);
    bool additionalOutputFileUpToDate(ProjectElement* element, const QString& configuration,
                                      const QString& output, Builder* builder, bool quiet);
    bool isThere(const QString& directory, const QString& path, Builder* builder, bool quiet);
    bool propertyGroupsDefinesUpToDate(ProjectElement* element, const QString& configuration,
                                       FileTime time);
    void reportUpToDate(ProjectElement* element, const Context& context) const;
    void runUserCommand(ProjectElement* element, const Context& context, const QString& title,
                        const char* commandName, const char* directoryName, const MacroMap& further,
                        const QStringList& outputFiles = {});
    void makeWritable(const Context& context, const QString& directory, const QString& path,
                      bool readOnly);
    bool useFileForLink(ProjectElement* element, const QString& configuration, const char* setting,
                        const QString& kind, QString& path);
    MemoryMap* loadFileForLink(ProjectElement* element, const QString& configuration,
                               const char* macrosSetting, const QString& path);
    QString pathFrom(const QString& directory, ProjectElement* element,
                     const QString& configuration);
    QString outputOf(ProjectElement* element, const QString& configuration);

    PropertyClassList m_compileClasses;
    PropertyClassList m_linkClasses;
    PropertyClassList m_archiveClasses;
    PropertyClassList m_stageClasses;
    PropertyClassList m_combineClasses;
    DependencyCache m_dependencies;
    QStringList m_objects; ///< those that the build of the current project has met
    StagedPackages m_packages;
    Facts m_facts;
};
