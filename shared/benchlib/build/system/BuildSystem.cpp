#include "build/system/BuildSystem.h"

#include "base/Path.h"
#include "base/QTx.h"
#include "build/system/BuildProperties.h"
#include "projects/solution/Builder.h"
#include "projects/solution/ProjectSystem.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

BuildSystem* buildSystem = nullptr;

namespace {

QString absolutePath(const QString& directory, const QString& name)
{
    return name.startsWith(u'/') ? name : directory + u'/' + name;
}

/// The macros that each file has of its own.
struct FileMacro {
    using Value = QString (*)(const ProjectElement& file);
    FileMacro(const QString& name, Value value)
        : name(name),
          reference(u"$("_s + name + u')'),
          value(value)
    {
    }

    QString name;
    QString reference;
    Value value;
};
const FileMacro FileMacros[] = {
    {u"ProjectNodeName"_s, [](const ProjectElement& file) { return file.getName(); }},
    {u"InputDir"_s, [](const ProjectElement& file) { return file.path().directory().osPath(); }},
    {u"InputName"_s, [](const ProjectElement& file) { return file.path().baseName(); }},
    {u"InputFileName"_s, [](const ProjectElement& file) { return file.path().fileName(); }},
    {u"InputExt"_s, [](const ProjectElement& file) { return file.path().extension(); }},
    {u"InputPath"_s, [](const ProjectElement& file) { return file.path().osPath(); }},
    {u"RelInputPath"_s, [](const ProjectElement& file) { return file.attribute(u"file_name"_s); }},
};

/// Whether a reference holds another one in its name or its fallback.
bool hasNestedReference(const QString& text)
{
    for (qsizetype at = text.indexOf(u"$("_s); at >= 0; at = text.indexOf(u"$("_s, at + 1)) {
        const qsizetype inner = text.indexOf(u'$', at + 1);
        const qsizetype end = text.indexOf(u')', at);
        if (inner >= 0 && (end < 0 || inner < end))
            return true;
    }
    return false;
}

/// The element whose macros an element shares: a file without configurations of its own, below
/// elements without, has its project's.
ProjectElement* macroBase(ProjectElement* element)
{
    while (element && !element->isProject() && element->configurations().isEmpty()
           && element->parent())
        element = element->parent();
    return element;
}

} // namespace

BuildSystem::BuildSystem()
{
    addPropertyClasses(buildProperties());
    addPropertyClasses({&executableFileNameProperty(), 1});
    m_libraryFileName = makePropertyClass(libraryFileNameProperty());
}

BuildSystem::~BuildSystem() = default;

// Properties

void BuildSystem::addPropertyClasses(std::span<const BuildPropertyRow> rows)
{
    for (const BuildPropertyRow& row : rows) {
        m_classes.push_back(makePropertyClass(row));
        PropertyClass* added = m_classes.back().get();
        m_order.append(added);
        m_byName.insert(added->saveName(), added);
    }
}

PropertyClass* BuildSystem::changePropertyClass(const char* name)
{
    return m_byName.value(QLatin1String(name));
}

const PropertyClass* BuildSystem::findPropertyClass(const QString& name) const
{
    return m_byName.value(name);
}

const PropertyClass* BuildSystem::propertyClass(const char* name) const
{
    const PropertyClass* found = m_byName.value(QLatin1String(name));
    if (!found)
        qFatal("no build property is called %s", name);
    return found;
}

QString BuildSystem::setting(ProjectElement* element, const char* name,
                             const QString& configuration) const
{
    return projectSystem->settingFor(element, propertyClass(name), configuration);
}

QString BuildSystem::expandedSetting(ProjectElement* element, const char* name,
                                     const QString& configuration)
{
    return settingForExpanded(element, propertyClass(name), configuration);
}

bool BuildSystem::yes(ProjectElement* element, const char* name, const QString& configuration) const
{
    return setting(element, name, configuration) == u"Yes";
}

QString BuildSystem::replaceMacros(ProjectElement* element, const QString& text,
                                   const QString& configuration)
{
    if (!text.contains(u'$'))
        return text;
    return MacroSystem::replaceMacros(macros(element, configuration), text);
}

QString BuildSystem::settingForExpanded(ProjectElement* element, const PropertyClass* propertyClass,
                                        const QString& configuration)
{
    return replaceMacros(element, projectSystem->settingFor(element, propertyClass, configuration),
                         configuration);
}

QStringList BuildSystem::replaceStringListMacros(ProjectElement* element, const QStringList& list,
                                                 const QString& configuration)
{
    QStringList expanded;
    for (const QString& entry : list)
        expanded << replaceMacros(element, entry, configuration);
    return expanded;
}

QStringList BuildSystem::stringListSetting(const QString& prefix, ProjectElement* element,
                                           const PropertyClass* propertyClass,
                                           const QString& configuration, bool expand)
{
    QStringList entries;
    for (const QString& entry : MacroSystem::stringListFromString(
             projectSystem->settingFor(element, propertyClass, configuration))) {
        const QString text = expand ? replaceMacros(element, entry, configuration) : entry;
        // Only what expansion has brought is a list of its own; an escaped ";" belongs to its
        // entry.
        const QStringList parts =
            text != entry ? text.split(u';', Qt::SkipEmptyParts) : QStringList(text);
        for (const QString& part : parts)
            entries << prefix + part;
    }
    return entries;
}

// Macros

MacroMap BuildSystem::baseMacros(ProjectElement* element, const QString& configuration)
{
    MacroMap macros = macroSystem->globalMacros(true);
    const QStringList entries = MacroSystem::stringListFromString(projectSystem->settingFor(
        element, projectSystem->propertyClass(u"macros"_s), configuration));
    macros = MacroSystem::overwriteMacros(macros, MacroSystem::macrosFromStringList(entries));

    const ProjectElement* project = element ? element->containingProject() : nullptr;
    macros.insert(u"ProjectDir"_s, element ? element->projectDirectory() : QString());
    macros.insert(u"ProjectName"_s, project ? project->getName() : QString());
    macros.insert(u"Configuration"_s, configuration);
    macros.insert(u"Platform"_s, projectSystem->platform(element).toLower());
    const ProjectElement* solution = element ? element->containingSolution() : nullptr;
    const QFileInfo file(solution ? solution->path().osPath() : QString());
    macros.insert(u"SolutionDir"_s, solution ? file.path() : QString());
    macros.insert(u"SolutionName"_s, file.completeBaseName());
    macros.insert(u"SolutionFileName"_s, file.fileName());
    macros.insert(u"SolutionPath"_s, file.filePath());
    macros.insert(u"SolutionExt"_s, file.suffix());
    return macros;
}

MacroMap BuildSystem::macros(ProjectElement* element, const QString& configuration)
{
    const quint64 changes = ProjectElement::changeCount();
    if (m_inBuild && m_elementCache.element == element
        && m_elementCache.configuration == configuration && m_elementCache.changes == changes)
        return m_elementCache.macros;

    ProjectElement* const base = macroBase(element);
    if (!m_inBuild || m_baseCache.element != base || m_baseCache.configuration != configuration
        || m_baseCache.changes != changes)
        m_baseCache = {base, configuration, changes, baseMacros(base, configuration)};

    // The last file's map is changed in place: each file sets the same names in it.
    const bool follows = m_inBuild && element && element->isFile() && m_elementCache.base == base
        && m_elementCache.element->isFile() && m_elementCache.configuration == configuration
        && m_elementCache.changes == changes;
    MacroMap macros = follows ? std::exchange(m_elementCache, {}).macros : m_baseCache.macros;
    macros.insert(u"ProjectNodeName"_s, element ? element->getName() : QString());
    if (element && element->isFile())
        for (const FileMacro& macro : FileMacros)
            macros.insert(macro.name, macro.value(*element));
    finishMacros(element, configuration, macros, follows);
    if (m_inBuild)
        m_elementCache = {element, configuration, changes, macros, base};
    return macros;
}

/// The macros behind those of the file, which may use them.
void BuildSystem::finishMacros(ProjectElement* element, const QString& configuration,
                               MacroMap& macros, bool extensionsStand)
{
    if (!extensionsStand) {
        macros.insert(u"OBJ"_s, objectFileExtension());
        macros.insert(u"EXE"_s, executableFileExtension());
        macros.insert(u"LIB"_s, libraryFileExtension());
        macros.insert(u"PackageExt"_s, u"kvq"_s);
    }

    const auto expanded = [&](const char* name) {
        const QString text = setting(element, name, configuration);
        return text.contains(u'$') ? MacroSystem::replaceMacros(macros, text) : text;
    };
    const auto orHere = [](const QString& directory) {
        return directory.isEmpty() ? u"."_s : directory;
    };
    macros.insert(u"IntDir"_s, orHere(expanded("build_intermediate_directory")));
    macros.insert(u"RootOutDir"_s, expanded("build_root_output_directory"));
    macros.insert(u"OutDir"_s, orHere(expanded("build_output_directory")));
    addMacros(element, configuration, macros);
    macros.insert(u"RootRelativeOutDir"_s,
                  Path(macros.value(u"OutDir"_s)).relativeDirPath(macros.value(u"RootOutDir"_s)));
}

// The names of outputs

QString BuildSystem::expandForFile(ProjectElement* file, const char* name,
                                   const QString& configuration)
{
    ProjectElement* const base = macroBase(file);
    if (!m_inBuild || base == file)
        return expandedSetting(file, name, configuration);
    const quint64 changes = ProjectElement::changeCount();
    if (m_pattern.base != base || m_pattern.name != name || m_pattern.configuration != configuration
        || m_pattern.changes != changes)
        m_pattern = {base, name, configuration, changes,
                     makePattern(file, base, name, configuration)};
    if (m_pattern.text.isNull())
        return expandedSetting(file, name, configuration);
    QString text = m_pattern.text;
    for (const FileMacro& macro : FileMacros)
        if (text.contains(macro.reference))
            text.replace(macro.reference, macro.value(*file));
    return text;
}

/// The setting's text for any file below the base, with only the macros of the file left in it;
/// null if a reference is made of others, so that this can't be told.
QString BuildSystem::makePattern(ProjectElement* file, ProjectElement* base, const char* name,
                                 const QString& configuration)
{
    const QString text = setting(file, name, configuration);
    for (const char* part : {name, "build_intermediate_directory", "build_root_output_directory",
                             "build_output_directory"})
        if (hasNestedReference(setting(file, part, configuration)))
            return {};
    MacroMap macros = baseMacros(base, configuration);
    for (const FileMacro& macro : FileMacros)
        macros.insert(macro.name, macro.reference);
    finishMacros(file, configuration, macros, false);
    return MacroSystem::replaceMacros(macros, text);
}

// Building

BuildResult BuildSystem::build(ProjectElement* element, const QString& configuration,
                               Builder* builder, unsigned mode, bool batch, bool isProject)
{
    m_cancelled = false;
    m_failed = false;
    m_built.clear();
    m_building.clear();
    m_fileTimes.clear();
    m_baseCache = {};
    m_elementCache = {};
    m_pattern = {};
    m_inBuild = true;
    ++m_buildNumber;
    bool built = false;
    if (element->isSolution())
        built = solutionBuild(element, configuration, builder, mode, batch);
    else if (element->isProject() && isProject)
        built = projectBuild(element, configuration, builder, mode, batch);
    else
        built = buildAlone(element, configuration, builder, mode);
    m_inBuild = false;
    if (m_cancelled)
        return BuildResult::Cancelled;
    if (m_failed)
        return BuildResult::Failed;
    return built ? BuildResult::Built : BuildResult::NothingToDo;
}

bool BuildSystem::solutionBuild(ProjectElement* solution, const QString& configuration,
                                Builder* builder, unsigned mode, bool batch)
{
    bool built = false;
    for (ProjectElement* child = solution->firstChild(); child && !stopped();
         child = child->nextSibling()) {
        if (child->isProject())
            built |= projectBuild(child, configuration, builder, mode, batch);
        else if (child->isSolution())
            built |= solutionBuild(child, configuration, builder, mode, batch);
    }
    return built;
}

bool BuildSystem::isExcluded(ProjectElement* project, const QString& configuration) const
{
    return setting(project, "build_exclude_from_build", configuration) != u"No";
}

bool BuildSystem::projectBuild(ProjectElement* project, const QString& configuration,
                               Builder* builder, unsigned mode, bool batch)
{
    const QStringList list = batch
        ? projectSystem->getBatchBuildConfigurations(project, CommonConfiguration)
        : QStringList(configuration);
    bool built = false;
    for (const QString& name : list) {
        if (stopped())
            break;
        if (!isExcluded(project, name))
            built |= projectBuildIn(project, name, builder, mode);
    }
    return built;
}

bool BuildSystem::projectBuildIn(ProjectElement* project, const QString& configuration,
                                 Builder* builder, unsigned mode)
{
    bool built = false;
    if (justBuilt(project, configuration, built))
        return built;
    if (std::find(m_building.begin(), m_building.end(), project) != m_building.end()) {
        reportCircle(project, builder);
        return false;
    }
    m_building.push_back(project);
    for (ProjectElement* dependency : projectSystem->directlyDependsOn(project, configuration)) {
        if (stopped())
            break;
        built |= projectBuild(dependency, configuration, builder, mode, false);
    }
    m_building.pop_back();
    if (stopped())
        return built;
    return buildAlone(project, configuration, builder, mode) || built;
}

void BuildSystem::reportCircle(const ProjectElement* project, Builder* builder)
{
    QStringList names;
    const auto first = std::find(m_building.begin(), m_building.end(), project);
    for (auto at = first; at != m_building.end(); ++at)
        names << (*at)->getName();
    names << project->getName();
    builder->error(u"Projects depend on each other in a circle: "_s + names.join(u", "_s));
    m_failed = true;
}

bool BuildSystem::buildAlone(ProjectElement* element, const QString& configuration,
                             Builder* builder, unsigned mode)
{
    displayProjectConfiguration(element, configuration, builder, mode);
    const bool rebuilt = platformBuild(element, configuration, builder, mode);
    m_built.push_back({element, configuration, rebuilt});
    builder->endGroup(element);
    return rebuilt;
}

void BuildSystem::displayProjectConfiguration(ProjectElement* element, const QString& configuration,
                                              Builder* builder, unsigned mode)
{
    QString verb = u"Building "_s;
    if (mode & BuildChecking)
        verb = u"Checking "_s;
    else if ((mode & BuildClean) && (mode & BuildCleanOnly))
        verb = u"Cleaning "_s;
    else if (mode & BuildClean)
        verb = u"Rebuilding "_s;
    builder->beginGroup(element,
                        verb + element->getName() + u" in configuration "_s + configuration);
}

bool BuildSystem::justBuilt(const ProjectElement* element, const QString& configuration,
                            bool& rebuilt) const
{
    for (const BuiltStruct& record : m_built)
        if (record.element == element && record.configuration == configuration) {
            rebuilt = record.rebuilt;
            return true;
        }
    return false;
}

// Counting mirrors building.

int BuildSystem::buildJobCount(ProjectElement* element, const QString& configuration, unsigned mode,
                               bool batch, bool isProject)
{
    m_built.clear();
    int count = 0;
    if (element->isSolution())
        count = solutionBuildJobCount(element, configuration, mode, batch);
    else if (element->isProject() && isProject)
        count = projectBuildJobCount(element, configuration, mode, batch);
    else
        count = countJobs(element, configuration, mode);
    m_built.clear();
    return count;
}

int BuildSystem::solutionBuildJobCount(ProjectElement* solution, const QString& configuration,
                                       unsigned mode, bool batch)
{
    int count = 0;
    for (ProjectElement* child = solution->firstChild(); child; child = child->nextSibling()) {
        if (child->isProject())
            count += projectBuildJobCount(child, configuration, mode, batch);
        else if (child->isSolution())
            count += solutionBuildJobCount(child, configuration, mode, batch);
    }
    return count;
}

int BuildSystem::projectBuildJobCount(ProjectElement* project, const QString& configuration,
                                      unsigned mode, bool batch)
{
    const QStringList list = batch
        ? projectSystem->getBatchBuildConfigurations(project, CommonConfiguration)
        : QStringList(configuration);
    int count = 0;
    for (const QString& name : list)
        if (!isExcluded(project, name))
            count += projectJobCountIn(project, name, mode);
    return count;
}

int BuildSystem::projectJobCountIn(ProjectElement* project, const QString& configuration,
                                   unsigned mode)
{
    bool counted = false;
    if (justBuilt(project, configuration, counted))
        return 0;
    // Noted before its dependencies, so that a circle ends here.
    m_built.push_back({project, configuration, true});
    int count = countJobs(project, configuration, mode);
    for (ProjectElement* dependency : projectSystem->directlyDependsOn(project, configuration))
        count += projectBuildJobCount(dependency, configuration, mode, false);
    return count;
}

// Files

bool BuildSystem::upToDate(const QString& directory, const QString& output, FileTime outputTime,
                           const QStringList& inputs, Builder* builder, bool quiet)
{
    for (const QString& input : inputs) {
        const FileTime time = m_fileTimes.of(directory, input);
        if (time != MissingFile && time <= outputTime)
            continue;
        if (!quiet && builder)
            builder->message(time == MissingFile ? input + u" does not exist."_s
                                                 : input + u" is newer than "_s + output);
        return false;
    }
    return true;
}

bool BuildSystem::exists(const QString& directory, const QString& name, QString& path,
                         FileTime& time, Builder* builder, bool quiet)
{
    path = absolutePath(directory, name);
    time = m_fileTimes.of(path);
    if (time != MissingFile)
        return true;
    if (!quiet && builder)
        builder->message(name + u" does not exist."_s);
    return false;
}

void BuildSystem::cleanFile(const QString& path, bool quiet, Builder* builder)
{
    if (FileTimes::now(path) == MissingFile || (builder && !builder->executes()))
        return;
    const bool removed = QTx::removeFile(path);
    m_fileTimes.clear();
    if (quiet || !builder)
        return;
    if (removed)
        builder->note(u"Remove "_s + path);
    else
        builder->error(u"Cannot remove "_s + path);
}

QString BuildSystem::findIncludeFile(bool system, const QString& name, ProjectElement* element,
                                     const QString& configuration)
{
    QStringList directories;
    if (!system) {
        directories << QFileInfo(element->path().osPath()).path();
        directories << stringListSetting(
            QString(), element, propertyClass("c_user_include_directories"), configuration);
    }
    directories << stringListSetting(QString(), element,
                                     propertyClass("c_system_include_directories"), configuration);
    const QString projectDirectory = element->projectDirectory();
    for (const QString& directory : directories) {
        const QString path =
            QDir::cleanPath(absolutePath(absolutePath(projectDirectory, directory), name));
        const QFileInfo info(path);
        if (info.isFile() && info.isReadable())
            return path;
    }
    return {};
}
