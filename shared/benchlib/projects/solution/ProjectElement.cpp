#include "projects/solution/ProjectElement.h"

#include "projects/macros/MacroSystem.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

const QString CommonConfiguration = u"Common"_s;

quint64 ProjectElement::s_changes = 0;

namespace {

struct KindTag {
    ProjectElement::Kind kind;
    const char* tag;
};
constexpr std::array<KindTag, 5> KindTags = {
    {{ProjectElement::Kind::Solution, "solution"},
     {ProjectElement::Kind::Configuration, "configuration"},
     {ProjectElement::Kind::Project, "project"},
     {ProjectElement::Kind::Folder, "folder"},
     {ProjectElement::Kind::File, "file"}}};

const QString NameAttribute = u"Name"_s;
const QString FileNameAttribute = u"file_name"_s;
const QString ProjectDirectoryProperty = u"project_directory"_s;
const QString InheritedConfigurationsAttribute = u"inherited_configurations"_s;

QString expandGlobalMacros(const QString& text)
{
    if (!macroSystem || !text.contains(u'$'))
        return text;
    return MacroSystem::replaceMacros(macroSystem->globalMacros(true), text);
}

} // namespace

/// What an open transaction has queued in one element.
struct ProjectElement::Transaction {
    QMap<QString, QString> setAttributes;
    QMap<QString, bool> removedAttributes;
    std::vector<std::unique_ptr<ProjectElement>> addedChildren;
    std::vector<ProjectElement*> removedChildren;
};

QString ProjectElement::tag(Kind kind)
{
    return QLatin1String(KindTags[static_cast<std::size_t>(kind)].tag);
}

bool ProjectElement::kindOfTag(const QByteArray& tag, Kind& kind)
{
    for (const KindTag& row : KindTags)
        if (tag == row.tag) {
            kind = row.kind;
            return true;
        }
    return false;
}

ProjectElement::ProjectElement(Kind kind) : m_kind(kind) { }

ProjectElement::~ProjectElement()
{
    qDeleteAll(m_configurations);
    while (m_firstChild) {
        ProjectElement* child = m_firstChild;
        m_firstChild = child->m_nextSibling;
        delete child;
    }
}

template <typename Visit> void ProjectElement::forEachBelow(Visit&& visit)
{
    visit(*this);
    for (ProjectElement* configuration : std::as_const(m_configurations))
        visit(*configuration);
    for (ProjectElement* child = m_firstChild; child; child = child->m_nextSibling)
        child->forEachBelow(visit);
}

ProjectElement* ProjectElement::appendChild(std::unique_ptr<ProjectElement> child)
{
    child->m_parent = this;
    ProjectElement* added = child.get();
    if (m_transaction) {
        m_transaction->addedChildren.push_back(std::move(child));
        return added;
    }
    if (child->m_kind == Kind::Configuration) {
        if (ProjectElement* existing = m_configurations.value(child->attribute(NameAttribute))) {
            existing->m_attributes.insert(child->m_attributes);
            existing->m_changeTimes.insert(child->m_changeTimes);
            m_modified = true;
            return existing;
        }
    }
    insertChild(child.release());
    m_modified = true;
    return added;
}

void ProjectElement::insertChild(ProjectElement* child)
{
    child->m_parent = this;
    if (child->m_kind == Kind::Configuration) {
        m_configurations.insert(child->attribute(NameAttribute), child);
        return;
    }
    (m_lastChild ? m_lastChild->m_nextSibling : m_firstChild) = child;
    m_lastChild = child;
}

void ProjectElement::removeChild(ProjectElement* child)
{
    if (!m_transaction) {
        takeChild(child);
        m_modified = true;
        return;
    }
    auto& added = m_transaction->addedChildren;
    const auto queued =
        std::find_if(added.begin(), added.end(), [&](const auto& it) { return it.get() == child; });
    auto& removed = m_transaction->removedChildren;
    if (queued != added.end())
        added.erase(queued);
    else if (std::find(removed.begin(), removed.end(), child) == removed.end())
        removed.push_back(child);
}

std::unique_ptr<ProjectElement> ProjectElement::takeChild(ProjectElement* child)
{
    if (child->m_kind == Kind::Configuration) {
        m_configurations.remove(m_configurations.key(child));
        return std::unique_ptr<ProjectElement>(child);
    }
    ProjectElement* before = nullptr;
    for (ProjectElement* at = m_firstChild; at && at != child; at = at->m_nextSibling)
        before = at;
    (before ? before->m_nextSibling : m_firstChild) = child->m_nextSibling;
    if (m_lastChild == child)
        m_lastChild = before;
    child->m_nextSibling = nullptr;
    child->m_parent = nullptr;
    return std::unique_ptr<ProjectElement>(child);
}

ProjectElement* ProjectElement::configuration(const QString& name) const
{
    if (!m_transaction)
        return m_configurations.value(name);
    for (const auto& added : m_transaction->addedChildren)
        if (added->m_kind == Kind::Configuration && added->attribute(NameAttribute) == name)
            return added.get();
    ProjectElement* found = m_configurations.value(name);
    const auto& removed = m_transaction->removedChildren;
    return std::find(removed.begin(), removed.end(), found) == removed.end() ? found : nullptr;
}

const ProjectElement* ProjectElement::containingProject() const
{
    const ProjectElement* element = this;
    while (element && element->m_kind != Kind::Project)
        element = element->m_parent;
    return element;
}

const ProjectElement* ProjectElement::containingSolution() const
{
    const ProjectElement* element = this;
    while (element && element->m_kind != Kind::Solution)
        element = element->m_parent;
    return element;
}

ProjectElement* ProjectElement::containingProject()
{
    return const_cast<ProjectElement*>(std::as_const(*this).containingProject());
}

ProjectElement* ProjectElement::containingSolution()
{
    return const_cast<ProjectElement*>(std::as_const(*this).containingSolution());
}

// Attributes

QString ProjectElement::attribute(const QString& name) const
{
    if (m_transaction) {
        if (m_transaction->removedAttributes.contains(name))
            return {};
        const auto queued = m_transaction->setAttributes.constFind(name);
        if (queued != m_transaction->setAttributes.constEnd())
            return *queued;
    }
    return m_attributes.value(name);
}

bool ProjectElement::hasAttribute(const QString& name) const
{
    if (m_transaction) {
        if (m_transaction->removedAttributes.contains(name))
            return false;
        if (m_transaction->setAttributes.contains(name))
            return true;
    }
    return m_attributes.contains(name);
}

void ProjectElement::recordChange(const QString& name)
{
    m_changeTimes.insert(name, QDateTime::currentDateTime());
    m_modified = true;
    ++s_changes;
    if (name == FileNameAttribute)
        clearFileStuff();
    else if (name == ProjectDirectoryProperty && m_kind == Kind::Configuration && m_parent)
        m_parent->clearFileStuff();
}

void ProjectElement::setAttribute(const QString& name, const QString& value, bool transaction)
{
    m_transactional.insert(name, transaction);
    if (m_transaction) {
        m_transaction->removedAttributes.remove(name);
        m_transaction->setAttributes.insert(name, value);
        return;
    }
    m_attributes.insert(name, value);
    recordChange(name);
}

void ProjectElement::removeAttribute(const QString& name)
{
    m_transactional.remove(name);
    if (m_transaction) {
        m_transaction->setAttributes.remove(name);
        m_transaction->removedAttributes.insert(name, true);
        return;
    }
    if (m_attributes.remove(name) > 0)
        recordChange(name);
}

void ProjectElement::restoreAttribute(const QString& name, const QString& value)
{
    m_attributes.insert(name, value);
    m_fileStuffValid = false;
}

void ProjectElement::forgetAttribute(const QString& name)
{
    m_attributes.remove(name);
    m_fileStuffValid = false;
}

QString ProjectElement::getName() const
{
    const QString name = attribute(NameAttribute);
    if (!name.isEmpty())
        return name;
    if (hasAttribute(FileNameAttribute))
        return QFileInfo(attribute(FileNameAttribute)).fileName();
    return u"<NULL>"_s;
}

// Properties

bool ProjectElement::getProperty(const QString& configuration, const QString& name, QString& value,
                                 PropertyInheritanceInformation* record) const
{
    const ProjectElement* place = this->configuration(configuration);
    if (!place || !place->hasAttribute(name))
        return false;
    const QString found = place->attribute(name);
    if (record)
        record->append({getName(), found, this});
    if (value.isEmpty())
        value = found;
    else
        value += u';' + found;
    return true;
}

bool ProjectElement::propertyHasChanged(const QString& configuration, const QString& name,
                                        const QDateTime& since, bool& newer)
{
    ProjectElement* place = this->configuration(configuration);
    if (!place)
        return false;
    const auto change = place->m_changeTimes.constFind(name);
    if (change == place->m_changeTimes.constEnd())
        return false;
    newer = *change > since;
    if (newer || place->hasAttribute(name))
        return true;
    place->m_changeTimes.remove(name);
    return false;
}

void ProjectElement::clearChangeTimes()
{
    forEachBelow([](ProjectElement& element) { element.m_changeTimes.clear(); });
}

void ProjectElement::updateInheritenceMap()
{
    m_inheritance.clear();
    for (const ProjectElement* configuration : std::as_const(m_configurations))
        if (configuration->hasAttribute(InheritedConfigurationsAttribute))
            m_inheritance.insert(configuration->attribute(NameAttribute),
                                 MacroSystem::stringListFromString(
                                     configuration->attribute(InheritedConfigurationsAttribute)));
}

const QStringList& ProjectElement::inheritedConfigurations(const QString& configuration) const
{
    static const QStringList none;
    for (const ProjectElement* solution = containingSolution(); solution;
         solution = solution->m_parent ? solution->m_parent->containingSolution() : nullptr) {
        const auto list = solution->m_inheritance.constFind(configuration);
        if (list != solution->m_inheritance.constEnd() && !list->isEmpty())
            return *list;
    }
    return none;
}

// Transactions

void ProjectElement::startTransaction()
{
    forEachBelow([](ProjectElement& element) {
        if (!element.m_transaction)
            element.m_transaction = std::make_unique<Transaction>();
    });
}

void ProjectElement::commitTransaction()
{
    std::vector<std::pair<ProjectElement*, std::unique_ptr<Transaction>>> open;
    forEachBelow([&](ProjectElement& element) {
        if (element.m_transaction)
            open.emplace_back(&element, std::move(element.m_transaction));
    });
    for (auto& [element, queued] : open) {
        for (auto it = queued->setAttributes.constBegin(); it != queued->setAttributes.constEnd();
             ++it)
            element->setAttribute(it.key(), it.value(), true);
        for (auto it = queued->removedAttributes.constBegin();
             it != queued->removedAttributes.constEnd(); ++it)
            element->removeAttribute(it.key());
    }
    // Removed children go last: they may be among the elements that were changed.
    for (auto& [element, queued] : open)
        for (auto& child : queued->addedChildren)
            element->appendChild(std::move(child));
    for (auto it = open.rbegin(); it != open.rend(); ++it)
        for (ProjectElement* child : it->second->removedChildren)
            it->first->removeChild(child);
}

void ProjectElement::rollBackTransaction()
{
    forEachBelow([](ProjectElement& element) { element.m_transaction.reset(); });
}

// Paths

const Path& ProjectElement::path() const
{
    checkDoFileStuff();
    return m_path;
}

void ProjectElement::setPath(const Path& path)
{
    m_path = path;
    clearFileStuff();
}

QString ProjectElement::solutionDirectory() const
{
    const ProjectElement* solution = containingSolution();
    return solution ? QFileInfo(solution->m_path.osPath()).path() : QString();
}

QString ProjectElement::projectDirectory() const
{
    const ProjectElement* project = containingProject();
    if (!project)
        return solutionDirectory();
    project->checkDoFileStuff();
    return project->m_projectDirectory;
}

QString ProjectElement::computeProjectDirectory() const
{
    const ProjectElement* common = m_configurations.value(CommonConfiguration);
    const QString stored = common ? common->attribute(ProjectDirectoryProperty) : QString();
    const QString directory = expandGlobalMacros(stored);
    if (directory.isEmpty())
        return solutionDirectory();
    return QDir::isAbsolutePath(directory)
        ? QDir::cleanPath(directory)
        : QDir::cleanPath(solutionDirectory() + u'/' + directory);
}

bool ProjectElement::inProjectDirectory() const
{
    checkDoFileStuff();
    return m_inProjectDirectory;
}

bool ProjectElement::belowProjectDirectory() const
{
    checkDoFileStuff();
    return m_belowProjectDirectory;
}

void ProjectElement::checkDoFileStuff() const
{
    if (m_fileStuffValid)
        return;
    m_fileStuffValid = true;
    if (m_kind == Kind::Project)
        m_projectDirectory = computeProjectDirectory();
    if (m_kind != Kind::File)
        return;
    const QString projectDirectory = this->projectDirectory();
    const QString name = expandGlobalMacros(attribute(FileNameAttribute));
    const QString absolute =
        QDir::cleanPath(QDir::isAbsolutePath(name) ? name : projectDirectory + u'/' + name);
    m_path = Path(absolute);
    const QString directory = QFileInfo(absolute).path();
    m_inProjectDirectory = directory == projectDirectory;
    m_belowProjectDirectory = m_inProjectDirectory || directory.startsWith(projectDirectory + u'/');
}

void ProjectElement::clearFileStuff()
{
    forEachBelow([](ProjectElement& element) { element.m_fileStuffValid = false; });
}
