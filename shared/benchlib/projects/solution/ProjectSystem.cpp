#include "projects/solution/ProjectSystem.h"

#include "base/TargetConstants.h"
#include "projects/macros/MacroSystem.h"
#include "projects/solution/Builder.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

ProjectSystem* projectSystem = nullptr;

namespace {

const QString HiddenAttribute = u"hidden"_s;
const QString NameAttribute = u"Name"_s;
const QString FileNameAttribute = u"file_name"_s;
const QString FilterName = u"filter"_s;
const QString PathAttribute = u"path"_s;
const QString InheritedConfigurations = u"inherited_configurations"_s;
const QString BatchBuildConfigurations = u"batch_build_configurations"_s;

bool isAggregate(const PropertyClass* propertyClass)
{
    return propertyClass->type() == PropertyClass::Type::StringList;
}

/// Visits the places of a look-up: at each level upward that has configurations, the configuration,
/// then those that it inherits, then "Common". Ends when the visitor answers true, or, with
/// `wholeLevels`, at the end of the level where it did.
template <typename Visit>
void visitPlaces(const ProjectElement* element, const QString& configuration, Visit&& visit)
{
    const bool isCommon = configuration == CommonConfiguration;
    for (; element; element = element->parent()) {
        if (element->configurations().isEmpty() && !element->inTransaction())
            continue;
        if (visit(element, configuration))
            return;
        if (isCommon)
            continue;
        for (const QString& inherited : element->inheritedConfigurations(configuration))
            if (visit(element, inherited))
                return;
        if (visit(element, CommonConfiguration))
            return;
    }
}

/// Calls visit(element) for the element and all below it, depth first, until it answers true.
template <typename Visit> ProjectElement* findBelow(ProjectElement* element, Visit&& visit)
{
    if (!element)
        return nullptr;
    if (visit(element))
        return element;
    for (ProjectElement* child = element->firstChild(); child; child = child->nextSibling())
        if (ProjectElement* found = findBelow(child, visit))
            return found;
    return nullptr;
}

QStringList splitFilter(const QString& filter)
{
    static const QRegularExpression separators(u"[,;]"_s);
    QStringList entries;
    for (const QString& entry : filter.split(separators, Qt::SkipEmptyParts))
        entries << entry.trimmed().toLower();
    return entries;
}

} // namespace

ProjectSystem::~ProjectSystem() = default;

// Properties

QString ProjectSystem::settingFor(const ProjectElement* element, const PropertyClass* propertyClass,
                                  const QString& configuration,
                                  PropertyInheritanceInformation* record) const
{
    const QString& name = propertyClass->saveName();
    const bool aggregate = isAggregate(propertyClass);
    QString result;
    bool found = false;
    visitPlaces(element, configuration, [&](const ProjectElement* at, const QString& place) {
        // "Common" behind another configuration isn't recorded: it is what the level falls back to.
        const bool fallback = place == CommonConfiguration && configuration != CommonConfiguration;
        found = at->getProperty(place, name, result, fallback ? nullptr : record) && !aggregate;
        return found;
    });
    if (found || !result.isEmpty())
        return result;
    if (record)
        record->append({QString(), propertyClass->defaultValue(), nullptr});
    return propertyClass->defaultValue();
}

QString ProjectSystem::specificSettingFor(const ProjectElement* element,
                                          const PropertyClass* propertyClass,
                                          const QString& configuration) const
{
    const ProjectElement* place = element ? element->configuration(configuration) : nullptr;
    return place ? place->attribute(propertyClass->saveName()) : QString();
}

QString ProjectSystem::configurationUsedFor(const ProjectElement* element,
                                            const PropertyClass* propertyClass,
                                            const QString& configuration) const
{
    QString used;
    visitPlaces(element, configuration, [&](const ProjectElement* at, const QString& place) {
        QString value;
        if (!at->getProperty(place, propertyClass->saveName(), value, nullptr))
            return false;
        used = place;
        return true;
    });
    return used;
}

QStringList ProjectSystem::getInheritedConfigurations(const ProjectElement* element,
                                                      const QString& configuration) const
{
    return element ? element->inheritedConfigurations(configuration) : QStringList();
}

void ProjectSystem::setInheritedConfigurations(ProjectElement* element,
                                               const QString& configuration,
                                               const QStringList& inherited)
{
    ProjectElement* solution = solutionContaining(element);
    if (!solution)
        return;
    createConfiguration(solution, configuration)
        ->setAttribute(InheritedConfigurations, inherited.join(u';'));
    solution->updateInheritenceMap();
}

void ProjectSystem::setProperty(ProjectElement* element, const PropertyClass* propertyClass,
                                const QString& configuration, const QString& value,
                                bool transaction)
{
    setProperty(element, propertyClass->saveName(),
                propertyClass->perConfiguration() ? configuration : CommonConfiguration, value,
                transaction);
}

void ProjectSystem::setProperty(ProjectElement* element, const QString& name,
                                const QString& configuration, const QString& value,
                                bool transaction)
{
    createConfiguration(element, configuration, transaction)
        ->setAttribute(name, value, transaction);
    emit propertiesChanged(element);
}

void ProjectSystem::removeProperty(ProjectElement* element, const PropertyClass* propertyClass,
                                   const QString& configuration)
{
    removeProperty(element, propertyClass->saveName(),
                   propertyClass->perConfiguration() ? configuration : CommonConfiguration);
}

void ProjectSystem::removeProperty(ProjectElement* element, const QString& name,
                                   const QString& configuration)
{
    ProjectElement* place = element->configuration(configuration);
    if (!place)
        return;
    place->removeAttribute(name);
    emit propertiesChanged(element);
}

QStringList ProjectSystem::configurations(const ProjectElement* element, unsigned flags) const
{
    QMap<QString, bool> hidden;
    for (const ProjectElement* at = element ? element : m_root.get(); at; at = at->parent())
        for (const ProjectElement* configuration : at->configurations()) {
            // One that is marked at any level is private at all.
            bool& isHidden = hidden[configuration->attribute(NameAttribute)];
            isHidden = isHidden || configuration->hasAttribute(HiddenAttribute);
        }
    hidden.remove(CommonConfiguration);

    const PropertyClass* platformClass = propertyClass(u"Platform"_s);
    const ProjectElement* place = element ? element : m_root.get();
    QStringList names;
    for (auto it = hidden.constBegin(); it != hidden.constEnd(); ++it) {
        const bool listed = it.value()
            ? (flags & WithHidden) != 0
            : (flags & WithPublic) && settingFor(place, platformClass, it.key()) == Get_PLATFORM();
        if (listed)
            names << it.key();
    }
    if ((flags & WithCommon) || names.isEmpty())
        names.prepend(CommonConfiguration);
    return names;
}

bool ProjectSystem::upToDate1(ProjectElement* element, const PropertyClass* propertyClass,
                              const QString& configuration, const QDateTime& since) const
{
    if (!changedSinceLoad())
        return true;
    const bool aggregate = isAggregate(propertyClass);
    bool newer = false;
    visitPlaces(element, configuration, [&](const ProjectElement* at, const QString& place) {
        bool changed = false;
        const bool stop = const_cast<ProjectElement*>(at)->propertyHasChanged(
            place, propertyClass->saveName(), since, changed);
        newer = newer || changed;
        return stop && !aggregate;
    });
    return !newer;
}

bool ProjectSystem::upToDate(ProjectElement* element, const PropertyClass* propertyClass,
                             const QString& configuration, const QDateTime& since, Builder* builder,
                             bool quiet) const
{
    if (upToDate1(element, propertyClass, configuration, since))
        return true;
    if (builder && !quiet)
        builder->message(propertyClass->shortDescription() + u" property has changed."_s);
    return false;
}

QString ProjectSystem::platform(const ProjectElement* element) const
{
    return settingFor(element, propertyClass(u"Platform"_s), CommonConfiguration);
}

QString ProjectSystem::getFileCodec(const ProjectElement* element) const
{
    QString codec;
    if (element)
        element->getProperty(CommonConfiguration, u"file_codec"_s, codec, nullptr);
    return codec;
}

QString ProjectSystem::expandBuildMacros(ProjectElement* element, const QString& text,
                                         const QString& configuration) const
{
    if (m_macroExpander)
        return m_macroExpander(element, text, configuration);
    return macroSystem ? MacroSystem::replaceMacros(macroSystem->globalMacros(true), text) : text;
}

// The tree

std::vector<ProjectElement*> ProjectSystem::solutionProjects() const
{
    std::vector<ProjectElement*> projects;
    findBelow(m_root.get(), [&](ProjectElement* element) {
        if (element->isProject())
            projects.push_back(element);
        return false;
    });
    return projects;
}

std::vector<ProjectElement*> ProjectSystem::solutionSolutions() const
{
    std::vector<ProjectElement*> solutions;
    findBelow(m_root.get(), [&](ProjectElement* element) {
        if (element->isSolution())
            solutions.push_back(element);
        return false;
    });
    return solutions;
}

ProjectElement* ProjectSystem::projectContaining(ProjectElement* element) const
{
    return element ? element->containingProject() : nullptr;
}

ProjectElement* ProjectSystem::solutionContaining(ProjectElement* element) const
{
    return element ? element->containingSolution() : nullptr;
}

ProjectElement* ProjectSystem::findProject(const ProjectElement* element, const QString& name) const
{
    const ProjectElement* solution = element ? element->containingSolution() : m_root.get();
    while (solution) {
        if (ProjectElement* project = solution->projects().value(name))
            return project;
        solution = solution->parent() ? solution->parent()->containingSolution() : nullptr;
    }
    return nullptr;
}

ProjectElement* ProjectSystem::findByName(ProjectElement* element, const QString& name) const
{
    return findBelow(element, [&](ProjectElement* at) { return at->getName() == name; });
}

ProjectElement* ProjectSystem::findConfiguration(const ProjectElement* element,
                                                 const QString& name) const
{
    return element ? element->configuration(name) : nullptr;
}

ProjectElement* ProjectSystem::findFolder(const ProjectElement* element, const QString& name) const
{
    for (ProjectElement* child = element ? element->firstChild() : nullptr; child;
         child = child->nextSibling())
        if (child->isFolder() && child->getName() == name)
            return child;
    return nullptr;
}

ProjectElement* ProjectSystem::findFile(ProjectElement* element, const QString& fileName) const
{
    return findBelow(element, [&](ProjectElement* at) {
        return at->isFile() && at->attribute(FileNameAttribute) == fileName;
    });
}

ProjectElement* ProjectSystem::findAbsoluteFile(ProjectElement* element, const Path& path) const
{
    return findBelow(element, [&](ProjectElement* at) {
        return (at->isFile() || at->isSolution()) && at->path() == path;
    });
}

ProjectElement* ProjectSystem::findRelativeFile(ProjectElement* element, const QString& path) const
{
    if (!element)
        return nullptr;
    QString absolute = path;
    if (macroSystem)
        absolute = MacroSystem::replaceMacros(macroSystem->globalMacros(true), absolute);
    if (QDir::isRelativePath(absolute))
        absolute = element->projectDirectory() + u'/' + absolute;
    return findAbsoluteFile(element, Path(QDir::cleanPath(absolute)));
}

bool ProjectSystem::containsFile(ProjectElement* element, const Path& path) const
{
    return findAbsoluteFile(element, path) != nullptr;
}

std::vector<ProjectElement*> ProjectSystem::sourceFiles(ProjectElement* element) const
{
    std::vector<ProjectElement*> files;
    findBelow(element, [&](ProjectElement* at) {
        if (at->isFile() && !getFileType(at).isEmpty())
            files.push_back(at);
        return false;
    });
    return files;
}

QString ProjectSystem::getGlobalProjectName(const ProjectElement* project) const
{
    return m_root ? m_root->projects().key(const_cast<ProjectElement*>(project)) : QString();
}

QMap<QString, ProjectElement*> ProjectSystem::updateProjectListOf(ProjectElement* solution)
{
    solution->updateInheritenceMap();
    QMap<QString, ProjectElement*> projects;
    for (ProjectElement* child = solution->firstChild(); child; child = child->nextSibling()) {
        if (child->isProject())
            projects.insert(child->getName(), child);
        if (!child->isSolution())
            continue;
        // "Library(core)" is the project core of the import Library, "Library,Deep(core)" that of
        // an import of it.
        const QMap<QString, ProjectElement*> inner = updateProjectListOf(child);
        for (auto it = inner.constBegin(); it != inner.constEnd(); ++it) {
            const bool nested = it.value()->containingSolution() != child;
            projects.insert(nested ? child->getName() + u',' + it.key()
                                   : child->getName() + u'(' + it.key() + u')',
                            it.value());
        }
    }
    solution->setProjects(projects);
    return projects;
}

void ProjectSystem::updateProjectList()
{
    m_projectNames.clear();
    if (m_root)
        m_projectNames = updateProjectListOf(m_root.get()).keys();
}

ProjectElement* ProjectSystem::createSolution(const QString& directory, const QString& name)
{
    closeSolution();
    m_root = std::make_unique<ProjectElement>(ProjectElement::Kind::Solution);
    m_root->setAttribute(NameAttribute, name);
    m_root->setAttribute(u"version"_s, u"2"_s);
    m_root->setPath(Path(QDir::cleanPath(directory + u'/' + name + u".kvp"_s)));
    updateProjectList();
    return m_root.get();
}

ProjectElement* ProjectSystem::createProject(ProjectElement* solution, const QString& name,
                                             const QString& type, const QString& directory)
{
    ProjectElement* project =
        solution->appendChild(std::make_unique<ProjectElement>(ProjectElement::Kind::Project));
    project->setAttribute(NameAttribute, name);
    createConfiguration(project, CommonConfiguration);
    if (!type.isEmpty())
        setProperty(project, u"project_type"_s, CommonConfiguration, type, false);
    if (!directory.isEmpty())
        setProperty(project, u"project_directory"_s, CommonConfiguration, directory, false);
    updateProjectList();
    return project;
}

ProjectElement* ProjectSystem::createFolder(ProjectElement* parent, const QString& name,
                                            const QString& filter, bool transaction)
{
    auto folder = std::make_unique<ProjectElement>(ProjectElement::Kind::Folder);
    folder->setAttribute(NameAttribute, name, transaction);
    if (!filter.isEmpty())
        createConfiguration(folder.get(), CommonConfiguration)
            ->setAttribute(FilterName, filter, transaction);
    return parent->appendChild(std::move(folder));
}

ProjectElement* ProjectSystem::createConfiguration(ProjectElement* parent, const QString& name,
                                                   bool transaction)
{
    if (ProjectElement* existing = parent->configuration(name))
        return existing;
    auto configuration = std::make_unique<ProjectElement>(ProjectElement::Kind::Configuration);
    configuration->setAttribute(NameAttribute, name, transaction);
    return parent->appendChild(std::move(configuration));
}

ProjectElement* ProjectSystem::addFile(ProjectElement* parent, const QString& fileName,
                                       bool transaction)
{
    auto file = std::make_unique<ProjectElement>(ProjectElement::Kind::File);
    file->setAttribute(FileNameAttribute, fileName, transaction);
    if (!parent->isProject())
        return parent->appendChild(std::move(file));
    const QString extension = QFileInfo(fileName).suffix().toLower();
    for (ProjectElement* child = parent->firstChild(); child; child = child->nextSibling()) {
        if (!child->isFolder() || child->isDynamicFolder())
            continue;
        QString filter;
        if (!child->getProperty(CommonConfiguration, FilterName, filter, nullptr))
            filter = child->attribute(FilterName);
        if (splitFilter(filter).contains(extension))
            return child->appendChild(std::move(file));
    }
    return parent->appendChild(std::move(file));
}

void ProjectSystem::setDynamicFolder(ProjectElement* folder, const QString& path,
                                     const QString& filter)
{
    folder->setAttribute(PathAttribute, path);
    folder->setAttribute(FilterName, filter);
    populateDynamicFolder(folder);
}

void ProjectSystem::populateDynamicFolder(ProjectElement* folder)
{
    static const QRegularExpression separators(u"[,; ]"_s);
    const QString stored = folder->attribute(PathAttribute);
    QString directory = stored;
    if (directory.startsWith(u'$') && macroSystem)
        directory = MacroSystem::replaceMacros(macroSystem->globalMacros(true), directory);
    else if (QDir::isRelativePath(directory))
        directory = folder->projectDirectory() + u'/' + directory;
    const QStringList names = QDir(directory).entryList(
        folder->attribute(FilterName).split(separators, Qt::SkipEmptyParts), QDir::Files,
        QDir::Name);

    // Names are stored as the path was, so that the solution can be moved with its files.
    QSet<QString> wanted;
    QStringList inOrder;
    for (const QString& name : names) {
        inOrder << stored + u'/' + name;
        wanted.insert(inOrder.last());
    }
    const bool wasModified = folder->modified();
    std::vector<ProjectElement*> gone;
    QSet<QString> present;
    for (ProjectElement* child = folder->firstChild(); child; child = child->nextSibling()) {
        const QString fileName = child->attribute(FileNameAttribute);
        if (child->isFile() && !wanted.contains(fileName))
            gone.push_back(child);
        else
            present.insert(fileName);
    }
    for (ProjectElement* child : gone)
        folder->removeChild(child);
    for (const QString& fileName : inOrder) {
        if (present.contains(fileName))
            continue;
        auto file = std::make_unique<ProjectElement>(ProjectElement::Kind::File);
        file->restoreAttribute(FileNameAttribute, fileName);
        folder->appendChild(std::move(file));
    }
    // What the directory holds isn't stored in the solution.
    folder->setModified(wasModified);
}

void ProjectSystem::renameElement(ProjectElement* element, const QString& name)
{
    ProjectElement* parent = element->parent();
    if (element->kind() == ProjectElement::Kind::Configuration && parent) {
        // Configurations are held by name.
        auto renamed = std::make_unique<ProjectElement>(ProjectElement::Kind::Configuration);
        for (auto it = element->attributes().constBegin(); it != element->attributes().constEnd();
             ++it)
            renamed->setAttribute(it.key(), it.value());
        renamed->setAttribute(NameAttribute, name);
        parent->removeChild(element);
        parent->appendChild(std::move(renamed));
    } else {
        element->setAttribute(NameAttribute, name);
    }
    updateProjectList();
}

void ProjectSystem::removeElement(ProjectElement* element, bool)
{
    if (!element->parent()) {
        closeSolution();
        return;
    }
    element->parent()->removeChild(element);
    updateProjectList();
}

void ProjectSystem::removeConfiguration(ProjectElement* element, const QString& name)
{
    if (ProjectElement* configuration = element->configuration(name))
        element->removeChild(configuration);
    if (element->isSolution())
        element->updateInheritenceMap();
}

std::unique_ptr<ProjectElement> ProjectSystem::clone(const ProjectElement* element) const
{
    auto copy = std::make_unique<ProjectElement>(element->kind());
    for (auto it = element->attributes().constBegin(); it != element->attributes().constEnd(); ++it)
        copy->setAttribute(it.key(), it.value());
    for (const ProjectElement* configuration : element->configurations())
        copy->appendChild(clone(configuration));
    for (const ProjectElement* child = element->firstChild(); child; child = child->nextSibling())
        copy->appendChild(clone(child));
    if (element->isSolution()) {
        copy->setPath(element->path());
        copy->setImported(element->isImported());
    }
    return copy;
}

void ProjectSystem::setBatchBuildConfigurations(ProjectElement* element,
                                                const QString& configuration,
                                                const QStringList& list)
{
    setProperty(element, BatchBuildConfigurations, configuration,
                MacroSystem::stringFromStringList(list), false);
}

QStringList ProjectSystem::getBatchBuildConfigurations(const ProjectElement* element,
                                                       const QString& configuration) const
{
    for (const ProjectElement* at = element; at; at = at->parent()) {
        QString stored;
        if (at->getProperty(configuration, BatchBuildConfigurations, stored, nullptr)
            && !stored.isEmpty())
            return MacroSystem::stringListFromString(stored);
    }
    return configurations(element, WithPublic);
}

// Dependencies

std::vector<ProjectElement*> ProjectSystem::directlyDependsOn(const ProjectElement* project,
                                                              const QString& configuration) const
{
    std::vector<ProjectElement*> dependencies;
    const QString names =
        settingFor(project, propertyClass(u"project_dependencies"_s), configuration);
    for (const QString& name : names.split(u';', Qt::SkipEmptyParts))
        if (ProjectElement* found = findProject(project, name))
            dependencies.push_back(found);
    return dependencies;
}

std::vector<ProjectElement*> ProjectSystem::dependsOn(const ProjectElement* project,
                                                      const QString& configuration) const
{
    std::vector<ProjectElement*> visited;
    std::vector<const ProjectElement*> open = {project};
    while (!open.empty()) {
        const ProjectElement* at = open.back();
        open.pop_back();
        for (ProjectElement* dependency : directlyDependsOn(at, configuration))
            if (std::find(visited.begin(), visited.end(), dependency) == visited.end()) {
                visited.push_back(dependency);
                open.push_back(dependency);
            }
    }
    return visited;
}

std::vector<ProjectElement*> ProjectSystem::buildOrder(ProjectElement* project,
                                                       const QString& configuration) const
{
    std::vector<ProjectElement*> order;
    QSet<ProjectElement*> entered;
    const auto enter = [&](const auto& self, ProjectElement* at) -> void {
        if (entered.contains(at))
            return;
        entered.insert(at);
        for (ProjectElement* dependency : directlyDependsOn(at, configuration))
            self(self, dependency);
        order.push_back(at);
    };
    enter(enter, project);
    return order;
}

// Transactions

void ProjectSystem::startTransaction()
{
    if (m_root)
        m_root->startTransaction();
}

void ProjectSystem::commitTransaction()
{
    if (!m_root)
        return;
    m_root->commitTransaction();
    updateProjectList();
}

void ProjectSystem::rollBackTransaction()
{
    if (m_root)
        m_root->rollBackTransaction();
}

// Virtual operations of the lowest level

PropertyClassList ProjectSystem::applicableSettingsFor(ProjectElement*, const QString&)
{
    return {};
}

QString ProjectSystem::defaultFileLocation(const ProjectElement* element) const
{
    return element ? element->projectDirectory() : QString();
}

QString ProjectSystem::getFileType(const ProjectElement*) const { return {}; }

void ProjectSystem::munge(ProjectElement*) { }
