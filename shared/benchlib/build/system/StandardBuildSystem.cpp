#include "build/system/StandardBuildSystem.h"

#include "base/Path.h"
#include "base/QTx.h"
#include "build/memorymap/MemoryMap.h"
#include "build/memorymap/MemoryMapOpenFiles.h"
#include "build/system/BuildProperties.h"
#include "build/system/CommandWords.h"
#include "projects/solution/Builder.h"
#include "projects/solution/ProjectSystem.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

using Action = StandardBuildSystem::BuildAction;

struct ActionOfText {
    const char* text;
    Action action;
};

constexpr ActionOfText ActionsOfProjectTypes[] = {
    {"Executable", Action::actionLink},
    {"Library", Action::actionArchive},
    {"Object file", Action::actionExternal},
    {"Externally Built Executable", Action::actionExternal},
    {"Staging", Action::actionStage},
    {"Combining", Action::actionCombine},
};

constexpr ActionOfText ActionsOfFileTypes[] = {
    {"C", Action::actionCompileC},          {"C++", Action::actionCompileCpp},
    {"Forth", Action::actionCompileForth},  {"Basic", Action::actionCompileBasic},
    {"Assembly", Action::actionAssemble},   {"Object file", Action::actionExternal},
    {"Executable", Action::actionExternal}, {"Library", Action::actionExternal},
};

Action actionOf(std::span<const ActionOfText> table, const QString& text)
{
    for (const ActionOfText& row : table)
        if (text == QLatin1String(row.text))
            return row.action;
    return Action::actionNone;
}

bool isCompile(Action action)
{
    return action >= Action::actionCompileC && action <= Action::actionAssemble;
}

QString projectType(ProjectElement* project)
{
    return projectSystem->settingFor(project, projectSystem->propertyClass(u"project_type"_s),
                                     CommonConfiguration);
}

QString absolutePath(const QString& directory, const QString& path)
{
    return QDir::cleanPath(path.startsWith(u'/') ? path : directory + u'/' + path);
}

} // namespace

StandardBuildSystem::StandardBuildSystem()
{
    addPropertyClasses(standardBuildProperties());
    m_compileClasses = {projectSystem->propertyClass(u"file_type"_s)};
    m_compileClasses += classesOf({"build_quietly",
                                   "build_debug_information",
                                   "build_treat_warnings_as_errors",
                                   "build_suppress_warnings",
                                   "c_additional_options",
                                   "c_only_additional_options",
                                   "cpp_only_additional_options",
                                   "asm_additional_options",
                                   "c_preprocessor_definitions",
                                   "c_preprocessor_undefinitions",
                                   "c_user_include_directories",
                                   "c_system_include_directories",
                                   "c_undefine_all_preprocessor_definitions",
                                   "c_enforce_ansi_checking",
                                   "cpp_enable_exceptions",
                                   "cpp_enable_rtti",
                                   "default_code_section",
                                   "default_data_section",
                                   "default_zeroed_section",
                                   "default_const_section",
                                   "default_vector_section",
                                   "compile_pre_build_command",
                                   "compile_pre_build_command_wd",
                                   "compile_post_build_command",
                                   "compile_post_build_command_wd"});
    m_linkClasses = classesOf({"build_quietly",
                               "build_debug_information",
                               "link_include_standard_libraries",
                               "link_standard_libraries_directory",
                               "link_use_multi_threaded_libraries",
                               "link_IOLibraryName",
                               "linker_additional_files",
                               "linker_additional_options",
                               "linker_memory_map_file",
                               "linker_memory_map_macros",
                               "linker_section_placement_file",
                               "linker_section_placement_macros",
                               "linker_output_format",
                               "linker_map_file",
                               "linker_printf_fmt_level",
                               "linker_printf_fp_enabled",
                               "linker_printf_width_precision_supported",
                               "linker_scanf_fmt_level",
                               "linker_scanf_fp_enabled",
                               "linker_scanf_character_group_matching_enabled",
                               "linker_pre_build_command",
                               "linker_pre_build_command_wd",
                               "linker_post_build_command",
                               "linker_post_build_command_wd",
                               "link_symbol_definitions",
                               "linker_keep_symbols"});
    m_archiveClasses = classesOf({"build_quietly"});
    m_stageClasses = classesOf({"stage_output_filepath", "stage_command", "stage_command_wd",
                                "stage_set_readonly", "stage_post_build_command",
                                "stage_post_build_command_wd", "stage_package_member_name"});
    m_combineClasses = classesOf({"combine_output_filepath", "combine_command",
                                  "combine_command_wd", "combine_set_readonly"});
}

StandardBuildSystem::~StandardBuildSystem() = default;

PropertyClassList StandardBuildSystem::classesOf(std::initializer_list<const char*> names) const
{
    PropertyClassList classes;
    for (const char* name : names)
        classes.append(propertyClass(name));
    return classes;
}

// What elements turn into

StandardBuildSystem::ElementFacts& StandardBuildSystem::factsOf(const ProjectElement* element,
                                                                const QString& configuration)
{
    const quint64 changes = ProjectElement::changeCount();
    if (m_facts.build != currentBuild() || m_facts.changes != changes
        || m_facts.configuration != configuration)
        m_facts = {currentBuild(), changes, configuration, {}};
    return m_facts.elements[element];
}

template <typename Value, typename Find>
Value StandardBuildSystem::foundOnce(const ProjectElement* element, const QString& configuration,
                                     std::optional<Value> ElementFacts::*fact, Find find)
{
    if (currentBuild() == NoBuild)
        return find();
    if (const std::optional<Value>& known = factsOf(element, configuration).*fact)
        return *known;
    const Value found = find();
    factsOf(element, configuration).*fact = found;
    return found;
}

StandardBuildSystem::BuildAction StandardBuildSystem::buildAction(ProjectElement* element,
                                                                  const QString& configuration)
{
    return foundOnce(element, configuration, &ElementFacts::action,
                     [&] { return findAction(element, configuration); });
}

StandardBuildSystem::BuildAction StandardBuildSystem::findAction(ProjectElement* element,
                                                                 const QString& configuration)
{
    if (element->isProject())
        return actionOf(ActionsOfProjectTypes, projectType(element));
    if (!element->isFile())
        return actionNone;
    if (yes(element, "build_exclude_from_build", configuration))
        return actionExcluded;
    if (ProjectElement* project = element->containingProject()) {
        const BuildAction ofProject = actionOf(ActionsOfProjectTypes, projectType(project));
        if (ofProject == actionStage || ofProject == actionCombine)
            return ofProject;
    }
    return actionOf(ActionsOfFileTypes, projectSystem->getFileType(element));
}

bool StandardBuildSystem::canCompile(ProjectElement* element, const QString& configuration)
{
    const BuildAction action = buildAction(element, configuration);
    return action == actionExcluded || isCompile(action) || action == actionStage;
}

bool StandardBuildSystem::mustCompile(ProjectElement* element, const QString& configuration)
{
    const BuildAction action = buildAction(element, configuration);
    return isCompile(action) || action == actionStage;
}

bool StandardBuildSystem::canLoad(ProjectElement* project, const QString& configuration)
{
    if (!project || !project->isProject())
        return false;
    const QString type = projectType(project);
    return type == u"Executable"
        || (type == u"Externally Built Executable"
            && !setting(project, "external_build_file_name", configuration).isEmpty());
}

QString StandardBuildSystem::outputOf(ProjectElement* element, const QString& configuration)
{
    switch (const BuildAction action = buildAction(element, configuration)) {
    case actionExternal:
        return element->isFile()
            ? element->path().osPath()
            : expandedSetting(element, "external_build_file_name", configuration);
    case actionLink: return expandedSetting(element, "build_output_file_name", configuration);
    case actionArchive: return settingForExpanded(element, libraryFileNameClass(), configuration);
    case actionStage:
        return element->isFile() ? expandedSetting(element, "stage_output_filepath", configuration)
                                 : QString();
    case actionCombine:
        return element->isFile()
            ? QString()
            : expandedSetting(element, "combine_output_filepath", configuration);
    default:
        return isCompile(action) ? expandForFile(element, "build_object_file_name", configuration)
                                 : QString();
    }
}

QString StandardBuildSystem::output(ProjectElement* element, const QString& configuration,
                                    bool relative)
{
    const QString made = foundOnce(element, configuration, &ElementFacts::output,
                                   [&] { return outputOf(element, configuration); });
    if (made.isEmpty() || relative)
        return made;
    return absolutePath(element->projectDirectory(), made);
}

/// A file as command lines of a directory show it: relative when it lies below, else absolute.
QString StandardBuildSystem::pathFrom(const QString& directory, ProjectElement* element,
                                      const QString& configuration)
{
    const QString path = element->isFile() && isCompile(buildAction(element, configuration))
        ? element->path().osPath()
        : output(element, configuration, false);
    return path.startsWith(directory + u'/') ? path.mid(directory.size() + 1) : path;
}

void StandardBuildSystem::findOutputs(ProjectElement* element, const QString& configuration,
                                      QStringList& list)
{
    for (ProjectElement* child = element->firstChild(); child; child = child->nextSibling()) {
        if (child->isFile()) {
            const QString made = output(child, configuration, true);
            const QString directory = child->projectDirectory() + u'/';
            if (!made.isEmpty())
                list << (made.startsWith(directory) ? made.mid(directory.size()) : made);
        } else if (child->isFolder()) {
            findOutputs(child, configuration, list);
        }
    }
}

void StandardBuildSystem::findRelativeInputs(ProjectElement* element, const QString& configuration,
                                             QStringList& list)
{
    for (ProjectElement* child = element->firstChild(); child; child = child->nextSibling()) {
        if (child->isFile() && !yes(child, "build_exclude_from_build", configuration))
            list << replaceMacros(child, child->attribute(u"file_name"_s), configuration);
        findRelativeInputs(child, configuration, list);
    }
}

QStringList StandardBuildSystem::linkInputs(ProjectElement* project, const QString& configuration,
                                            bool& forced)
{
    QStringList inputs;
    findOutputs(project, configuration, inputs);
    const QString directory = project->projectDirectory();
    for (ProjectElement* dependency : projectSystem->directlyDependsOn(project, configuration)) {
        if (setting(dependency, "build_exclude_from_build", configuration) != u"No")
            continue;
        const QString type = projectType(dependency);
        if (type == u"Library") {
            inputs << pathFrom(directory, dependency, configuration);
        } else if (type == u"Object file") {
            QStringList objects;
            findOutputs(dependency, configuration, objects);
            for (const QString& object : objects)
                inputs << absolutePath(dependency->projectDirectory(), object);
        } else {
            continue;
        }
        bool rebuilt = false;
        if (justBuilt(dependency, configuration, rebuilt) && rebuilt)
            forced = true;
    }
    return inputs
        + stringListSetting(QString(), project, propertyClass("linker_additional_files"),
                            configuration);
}

ProjectElement* StandardBuildSystem::findFileOfType(ProjectElement* element, const QString& kind)
{
    for (ProjectElement* child = element->firstChild(); child; child = child->nextSibling()) {
        if (child->isFile() && projectSystem->getFileType(child) == kind)
            return child;
        if (ProjectElement* found = findFileOfType(child, kind))
            return found;
    }
    return nullptr;
}

// Placement files

bool StandardBuildSystem::useFileForLink(ProjectElement* element, const QString& configuration,
                                         const char* setting, const QString& kind, QString& path)
{
    ProjectElement* project = element->containingProject();
    if (ProjectElement* own = project ? findFileOfType(project, kind) : nullptr)
        path = own->path().osPath();
    else
        path = expandedSetting(element, setting, configuration);
    return !path.isEmpty();
}

bool StandardBuildSystem::useMemoryMapFileForLink(ProjectElement* element,
                                                  const QString& configuration, QString& path)
{
    return useFileForLink(element, configuration, "linker_memory_map_file", u"Memory Map"_s, path);
}

bool StandardBuildSystem::useSectionPlacementFileForLink(ProjectElement* element,
                                                         const QString& configuration,
                                                         QString& path)
{
    return useFileForLink(element, configuration, "linker_section_placement_file",
                          u"Section Placement"_s, path);
}

MemoryMap* StandardBuildSystem::loadFileForLink(ProjectElement* element,
                                                const QString& configuration,
                                                const char* macrosSetting, const QString& path)
{
    return MemoryMapOpenFiles::getMemoryMapFile(
        absolutePath(element->projectDirectory(), path),
        expandedSetting(element, macrosSetting, configuration), true);
}

MemoryMap* StandardBuildSystem::getMemoryMapFileForLink(ProjectElement* element,
                                                        const QString& configuration, QString& path)
{
    return useMemoryMapFileForLink(element, configuration, path)
        ? loadFileForLink(element, configuration, "linker_memory_map_macros", path)
        : nullptr;
}

MemoryMap* StandardBuildSystem::getSectionPlacementFileForLink(ProjectElement* element,
                                                               const QString& configuration,
                                                               QString& path)
{
    return useSectionPlacementFileForLink(element, configuration, path)
        ? loadFileForLink(element, configuration, "linker_section_placement_macros", path)
        : nullptr;
}

// Building

int StandardBuildSystem::countJobs(ProjectElement* element, const QString& configuration,
                                   unsigned mode)
{
    if (mode & BuildThisOnly)
        return 0;
    const BuildAction action = buildAction(element, configuration);
    if (action == actionExcluded || action == actionExternal)
        return 0;
    int count = action == actionNone ? 0 : 1;
    for (ProjectElement* child = element->firstChild(); child; child = child->nextSibling())
        count += countJobs(child, configuration, mode);
    return count;
}

bool StandardBuildSystem::platformBuild(ProjectElement* element, const QString& configuration,
                                        Builder* builder, unsigned mode)
{
    if (element->isProject() && builder)
        builder->setTotalSteps(element, countJobs(element, configuration, mode));
    projectSystem->useGroupFileOf(element, configuration);
    m_packages.clear();
    m_objects.clear();
    const QString dependencies =
        element->isProject() ? dependencyFile(element, configuration) : QString();
    if (!dependencies.isEmpty())
        m_dependencies.load(dependencies);
    const bool rebuilt = platformBuild1(element, {configuration, builder, mode});
    if (!dependencies.isEmpty() && builder && builder->executes()) {
        if (mode & BuildCleanOnly)
            QTx::removeFile(dependencies);
        else
            m_dependencies.save(dependencies, m_objects);
    }
    QString errorText;
    if (!m_packages.write(errorText)) {
        builder->error(errorText);
        setFailed();
    }
    return rebuilt;
}

bool StandardBuildSystem::platformBuild1(ProjectElement* element, const Context& context)
{
    if (context.builder)
        context.builder->idle();
    bool forced =
        (context.mode & BuildForce) || yes(element, "build_always_rebuild", context.configuration);
    const BuildAction action = buildAction(element, context.configuration);
    if (action != actionExternal && !(context.mode & BuildThisOnly))
        for (ProjectElement* child = element->firstChild(); child && !stopped();
             child = child->nextSibling())
            if (platformBuild1(child, context))
                forced = true;
    if (stopped())
        return false;
    switch (action) {
    case actionNone:
    case actionExcluded: return forced;
    case actionLink: return buildLink(element, context, forced);
    case actionArchive: return buildArchive(element, context, forced);
    case actionExternal: return element->isProject() && buildExternal(element, context);
    case actionStage:
        if (element->isFile())
            return buildStage(element, context, forced);
        finishStage(element, context, forced);
        return forced;
    case actionCombine:
        if (element->isProject())
            return buildCombine(element, context, forced);
        // Nothing of its own, but countJobs() counts it.
        if (context.builder)
            context.builder->nextStep();
        return forced;
    default: return buildCompile(element, context, action, forced);
    }
}

void StandardBuildSystem::reportUpToDate(ProjectElement* element, const Context& context) const
{
    if (!context.quiet() && context.builder)
        context.builder->success(u'\'' + element->getName() + u"' is up to date"_s);
}

void StandardBuildSystem::runCommand(Builder* builder, const QString& directory,
                                     const QStringList& command, const QStringList& outputFiles)
{
    builder->setDirectory(directory);
    builder->setOutputFiles(outputFiles);
    builder->setCommand(command);
    builder->doit();
    m_fileTimes.clear();
}

void StandardBuildSystem::runUserCommand(ProjectElement* element, const Context& context,
                                         const QString& title, const char* commandName,
                                         const char* directoryName, const MacroMap& further,
                                         const QStringList& outputFiles)
{
    const MacroMap macros =
        MacroSystem::overwriteMacros(this->macros(element, context.configuration), further);
    const auto expanded = [&](const char* name) {
        return MacroSystem::replaceMacros(macros, setting(element, name, context.configuration));
    };
    const QStringList command = commandWords(stripOuterQuotes(expanded(commandName)));
    if (command.isEmpty())
        return;
    const QString directory = absolutePath(element->projectDirectory(), expanded(directoryName));
    context.builder->init();
    context.builder->setDirectory(directory);
    context.builder->beginGroup(nullptr, title + element->getName());
    runCommand(context.builder, directory, command, outputFiles);
    context.builder->endGroup(nullptr);
}

QStringList StandardBuildSystem::dependenciesOf(const QString& objectPath, FileTime objectTime,
                                                const QString& input)
{
    QStringList files;
    m_objects << objectPath;
    if (m_dependencies.find(objectPath, objectTime, files))
        return files;
    files = getObjectFileDependencies(objectPath);
    if (files.isEmpty())
        files << input;
    m_dependencies.insert(objectPath, objectTime, files);
    return files;
}

/// Where the dependencies of a project's objects are kept between programs.
QString StandardBuildSystem::dependencyFile(ProjectElement* project, const QString& configuration)
{
    return absolutePath(project->projectDirectory(),
                        expandedSetting(project, "build_intermediate_directory", configuration))
        + u'/' + project->getName() + u".dependencies"_s;
}

bool StandardBuildSystem::buildCompile(ProjectElement* element, const Context& context,
                                       BuildAction action, bool forced)
{
    const QString& configuration = context.configuration;
    if (context.builder)
        context.builder->nextStep();
    const QString directory = element->projectDirectory();
    Step step{element, configuration,
              action,  output(element, configuration, true),
              {},      {pathFrom(directory, element, configuration)}};
    step.absoluteOutput = absolutePath(directory, step.output);
    const FileTime time = m_fileTimes.of(step.absoluteOutput);
    if (time != MissingFile && !forced
        && upToDate(directory, step.output, time,
                    dependenciesOf(step.absoluteOutput, time, step.inputs.first()), context.builder,
                    context.quiet())
        && commandUpToDate(element, configuration, time, action, context.builder,
                           context.quiet())) {
        reportUpToDate(element, context);
        return false;
    }
    m_dependencies.remove(step.absoluteOutput);
    if (context.clean())
        cleanFile(step.absoluteOutput, context.quiet(), context.builder);
    if (!context.runTools())
        return true;
    runUserCommand(element, context, u"Pre-compile command "_s, "compile_pre_build_command",
                   "compile_pre_build_command_wd", {});
    if (stopped())
        return true;
    createCommandFor(step, context.builder);
    // Known now, they need not be read by the next build.
    if (const FileTime made = FileTimes::now(step.absoluteOutput);
        made != MissingFile && context.builder->executes() && !stopped())
        dependenciesOf(step.absoluteOutput, made, step.inputs.first());
    if (!stopped())
        runUserCommand(element, context, u"Post-compile command "_s, "compile_post_build_command",
                       "compile_post_build_command_wd", {{u"TargetPath"_s, step.absoluteOutput}});
    return true;
}

bool StandardBuildSystem::isThere(const QString& directory, const QString& path, Builder* builder,
                                  bool quiet)
{
    QString absolute;
    FileTime time;
    return exists(directory, path, absolute, time, builder, quiet);
}

QString StandardBuildSystem::besideOutput(const QString& output, const QString& extension)
{
    return Path(output).directory().osPath() + u'/' + Path(output).baseName() + extension;
}

bool StandardBuildSystem::mapOutputFileUpToDate(ProjectElement* element,
                                                const QString& configuration, const QString& output,
                                                Builder* builder, bool quiet)
{
    return !yes(element, "linker_map_file", configuration)
        || isThere(element->projectDirectory(), besideOutput(output, u".map"_s), builder, quiet);
}

bool StandardBuildSystem::additionalOutputFileUpToDate(ProjectElement* element,
                                                       const QString& configuration,
                                                       const QString& output, Builder* builder,
                                                       bool quiet)
{
    const QString format = setting(element, "linker_output_format", configuration);
    return format == u"None"
        || isThere(element->projectDirectory(), besideOutput(output, u'.' + format), builder,
                   quiet);
}

bool StandardBuildSystem::buildLink(ProjectElement* project, const Context& context, bool forced)
{
    const QString& configuration = context.configuration;
    if (context.builder)
        context.builder->nextStep();
    const QString directory = project->projectDirectory();
    Step step{project, configuration, actionLink, output(project, configuration, true), {}, {}};
    step.absoluteOutput = absolutePath(directory, step.output);
    step.inputs = linkInputs(project, configuration, forced);

    const FileTime time = m_fileTimes.of(step.absoluteOutput);
    if (time != MissingFile && !forced) {
        QStringList inputs = step.inputs;
        QString placement;
        if (ProjectElement* script = findFileOfType(project, u"Linker Script"_s)) {
            inputs << script->path().osPath();
        } else {
            if (useMemoryMapFileForLink(project, configuration, placement))
                inputs << placement;
            if (useSectionPlacementFileForLink(project, configuration, placement))
                inputs << placement;
        }
        Builder* builder = context.builder;
        const bool quiet = context.quiet();
        if (upToDate(directory, step.output, time, inputs, builder, quiet)
            && commandUpToDate(project, configuration, time, actionLink, builder, quiet)
            && additionalOutputFileUpToDate(project, configuration, step.output, builder, quiet)
            && mapOutputFileUpToDate(project, configuration, step.output, builder, quiet)) {
            reportUpToDate(project, context);
            return false;
        }
    }
    if (context.clean())
        cleanFile(step.absoluteOutput, context.quiet(), context.builder);
    if (!context.runTools())
        return true;
    runUserCommand(project, context, u"Pre-link command "_s, "linker_pre_build_command",
                   "linker_pre_build_command_wd", {});
    if (stopped())
        return true;
    createCommandFor(step, context.builder);
    if (!stopped())
        runUserCommand(project, context, u"Post-link command "_s, "linker_post_build_command",
                       "linker_post_build_command_wd", {{u"TargetPath"_s, step.absoluteOutput}});
    return true;
}

bool StandardBuildSystem::buildArchive(ProjectElement* project, const Context& context, bool forced)
{
    const QString& configuration = context.configuration;
    if (context.builder)
        context.builder->nextStep();
    const QString directory = project->projectDirectory();
    Step step{project, configuration, actionArchive, output(project, configuration, true), {}, {}};
    step.absoluteOutput = absolutePath(directory, step.output);
    findOutputs(project, configuration, step.inputs);

    const FileTime time = m_fileTimes.of(step.absoluteOutput);
    if (time != MissingFile && !forced
        && upToDate(directory, step.output, time, step.inputs, context.builder, context.quiet())
        && commandUpToDate(project, configuration, time, actionArchive, context.builder,
                           context.quiet())) {
        reportUpToDate(project, context);
        return false;
    }
    if (context.clean())
        cleanFile(step.absoluteOutput, context.quiet(), context.builder);
    if (context.runTools())
        createCommandFor(step, context.builder);
    return true;
}

bool StandardBuildSystem::buildExternal(ProjectElement* project, const Context& context)
{
    if (!context.builder)
        return false;
    const QString directory = project->projectDirectory();
    const auto run = [&](const QString& title, const char* name, const QStringList& outputFiles) {
        const QStringList command =
            commandWords(expandedSetting(project, name, context.configuration));
        if (command.isEmpty())
            return false;
        context.builder->init();
        context.builder->beginGroup(nullptr, title + project->getName());
        runCommand(context.builder, directory, command, outputFiles);
        context.builder->endGroup(nullptr);
        return true;
    };
    bool ran = false;
    if (context.clean())
        ran = run(u"Running Clean command "_s, "external_clean_command", {});
    if (context.runTools() && !stopped()) {
        const QString made = output(project, context.configuration, false);
        ran |= run(u"Running Build command "_s, "external_build_command",
                   made.isEmpty() ? QStringList() : QStringList(made));
    }
    return ran;
}

void StandardBuildSystem::makeWritable(const Context& context, const QString& directory,
                                       const QString& path, bool readOnly)
{
    context.builder->init();
    runCommand(context.builder, directory, {u"chmod"_s, readOnly ? u"-w"_s : u"+w"_s, path}, {});
}

bool StandardBuildSystem::buildStage(ProjectElement* file, const Context& context, bool forced)
{
    const QString& configuration = context.configuration;
    if (context.builder)
        context.builder->nextStep();
    const QString directory = file->projectDirectory();
    const QString made = output(file, configuration, false);
    const MacroMap further = {
        {u"StageOutputFilePath"_s, made},
        {u"StageBenchDirRelativeOutputFilePath"_s,
         Path(made).relativeFilePath(macroSystem->systemMacro(u"BenchDir"_s))}};
    const MacroMap macros =
        MacroSystem::overwriteMacros(this->macros(file, configuration), further);
    QString package =
        MacroSystem::replaceMacros(macros, setting(file, "stage_package_filepath", configuration));
    if (!package.isEmpty())
        package = absolutePath(directory, package);
    const QString member = MacroSystem::replaceMacros(
        macros, setting(file, "stage_package_member_name", configuration));
    const bool executes = context.builder && context.builder->executes();
    const auto addToRemoveFromArchive = [&](bool add) {
        if (package.isEmpty() || !executes)
            return;
        if (add)
            m_packages.add(package, member, made);
        else
            m_packages.remove(package, member);
    };

    const FileTime time = m_fileTimes.of(made);
    if (time != MissingFile && !forced
        && upToDate(directory, made, time, {file->path().osPath()}, context.builder,
                    context.quiet())
        && commandUpToDate(file, configuration, time, actionStage, context.builder,
                           context.quiet())) {
        if (!context.quiet() && context.builder)
            context.builder->success(u'\'' + file->getName() + u"' is up to date."_s);
        if (!package.isEmpty() && FileTimes::now(package) < time)
            addToRemoveFromArchive(true);
        return false;
    }
    if (context.clean()) {
        cleanFile(made, context.quiet(), context.builder);
        addToRemoveFromArchive(false);
    }
    if (!context.runTools())
        return true;
    runUserCommand(file, context, u"Copying "_s, "stage_command", "stage_command_wd", further,
                   {made});
    if (stopped())
        return true;
    makeWritable(context, directory, made, yes(file, "stage_set_readonly", configuration));
    if (!stopped())
        addToRemoveFromArchive(true);
    return true;
}

void StandardBuildSystem::finishStage(ProjectElement* project, const Context& context, bool forced)
{
    if (context.builder)
        context.builder->nextStep();
    if (forced && context.runTools())
        runUserCommand(project, context, u"Post-stage command "_s, "stage_post_build_command",
                       "stage_post_build_command_wd", {});
}

bool StandardBuildSystem::buildCombine(ProjectElement* project, const Context& context, bool forced)
{
    const QString& configuration = context.configuration;
    if (context.builder)
        context.builder->nextStep();
    const QString directory = project->projectDirectory();
    const QString made = output(project, configuration, false);
    QStringList inputs;
    findRelativeInputs(project, configuration, inputs);
    const FileTime time = m_fileTimes.of(made);
    if (time != MissingFile && !forced
        && upToDate(directory, made, time, inputs, context.builder, context.quiet())
        && commandUpToDate(project, configuration, time, actionCombine, context.builder,
                           context.quiet())) {
        reportUpToDate(project, context);
        return false;
    }
    if (context.clean())
        cleanFile(made, context.quiet(), context.builder);
    if (!context.runTools())
        return true;
    runUserCommand(
        project, context, u"Combining "_s, "combine_command", "combine_command_wd",
        {{u"CombiningOutputFilePath"_s, made}, {u"CombiningRelInputPaths"_s, inputs.join(u' ')}},
        {made});
    if (!stopped())
        makeWritable(context, directory, made, yes(project, "combine_set_readonly", configuration));
    return true;
}

// What is current

bool StandardBuildSystem::optionsUpToDate(const PropertyClassList& classes, ProjectElement* element,
                                          const QString& configuration, FileTime time,
                                          Builder* builder, bool quiet)
{
    if (!projectSystem->changedSinceLoad())
        return true;
    const QDateTime since = FileTimes::toDateTime(time);
    for (const PropertyClass* propertyClass : classes)
        if (!projectSystem->upToDate(element, propertyClass, configuration, since, builder, quiet))
            return false;
    return true;
}

bool StandardBuildSystem::commandUpToDate(ProjectElement* element, const QString& configuration,
                                          FileTime outputTime, BuildAction action, Builder* builder,
                                          bool quiet)
{
    const auto current = [&](const PropertyClassList& classes) {
        return optionsUpToDate(classes, element, configuration, outputTime, builder, quiet);
    };
    switch (action) {
    case actionLink: return current(m_linkClasses);
    case actionArchive: return current(m_archiveClasses);
    case actionStage: return current(m_stageClasses);
    case actionCombine: return current(m_combineClasses);
    default:
        return !isCompile(action)
            || (current(m_compileClasses)
                && propertyGroupsDefinesUpToDate(element, configuration, outputTime));
    }
}

bool StandardBuildSystem::propertyGroupsDefinesUpToDate(ProjectElement* element,
                                                        const QString& configuration, FileTime time)
{
    if (!projectSystem->changedSinceLoad())
        return true;
    for (const PropertyValueGroupClass* group : projectSystem->propertyGroups().classes()) {
        if (projectSystem->upToDate1(element, group, configuration, FileTimes::toDateTime(time)))
            continue;
        const QString chosen = projectSystem->settingFor(element, group, configuration);
        if (group->getGroupEntry(chosen).hasDefines())
            return false;
    }
    return true;
}

void StandardBuildSystem::getDependencies(ProjectElement* element, const QString& configuration,
                                          QStringList& list)
{
    if (element->isFile()) {
        const QString object = output(element, configuration, false);
        const FileTime time = FileTimes::now(object);
        if (time != MissingFile && isCompile(buildAction(element, configuration)))
            list += dependenciesOf(object, time, element->path().osPath());
        return;
    }
    ProjectElement* project = element->containingProject();
    if (!project)
        return;
    for (ProjectElement* built : projectSystem->buildOrder(project, configuration)) {
        bool forced = false;
        const QString made = output(built, configuration, false);
        if (!made.isEmpty())
            list << made;
        for (const QString& input : linkInputs(built, configuration, forced))
            list << absolutePath(built->projectDirectory(), input);
    }
}
