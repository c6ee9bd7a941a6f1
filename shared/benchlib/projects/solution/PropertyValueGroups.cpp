#include "projects/solution/PropertyValueGroups.h"

#include "base/QTx.h"
#include "projects/solution/ProjectSystem.h"
#include "projects/xml/XMLPP2.h"

#include <QLoggingCategory>

using namespace Qt::Literals::StringLiterals;

namespace {

const char PropertyTag[] = "property";
const char DefinitionTag[] = "cdefine";

} // namespace

bool PropertyValueGroupEntry::getTaggedValue(const char* tag, const QString& name,
                                             QString& value) const
{
    if (m_element)
        for (const XMLElement& child : m_element->children())
            if (child.hasTag(tag) && child.attribute("name") == name) {
                value = child.attribute("value");
                return true;
            }
    return false;
}

QStringList PropertyValueGroupEntry::getTaggedNames(const char* tag) const
{
    QStringList names;
    if (m_element)
        for (const XMLElement& child : m_element->children())
            if (child.hasTag(tag))
                names << child.attribute("name");
    return names;
}

bool PropertyValueGroupEntry::hasDefines() const
{
    return !getTaggedNames(DefinitionTag).isEmpty();
}

PropertyValueGroupClass::PropertyValueGroupClass(const XMLElement& group)
    : PropertyClass(group.attribute("name"), Type::Enumeration, QStringList(),
                    group.attribute("page", u"General"_s), group.attribute("group"),
                    group.attribute("short"), group.attribute("long"), group.attribute("default"))
{
    QStringList names;
    for (const XMLElement& child : group.children()) {
        if (!child.hasTag("groupEntry"))
            continue;
        names << child.attribute("name");
        if (!m_entries.contains(names.last()))
            m_entries.insert(names.last(), &child);
    }
    setEnumerates(names);
}

PropertyValueGroupEntry PropertyValueGroupClass::getGroupEntry(const QString& name) const
{
    return PropertyValueGroupEntry(m_entries.value(name));
}

PropertyValueGroupFile::PropertyValueGroupFile(const QString& path)
    : m_path(path),
      m_time(QTx::getUTCModificationTime(path))
{
}

PropertyValueGroupFile::~PropertyValueGroupFile() = default;

bool PropertyValueGroupFile::isUpToDate() const
{
    return QTx::getUTCModificationTime(m_path) == m_time;
}

const std::vector<std::unique_ptr<PropertyValueGroupClass>>& PropertyValueGroupFile::classes()
{
    if (!m_loaded)
        load();
    return m_classes;
}

void PropertyValueGroupFile::load()
{
    m_loaded = true;
    auto document = std::make_unique<XMLPP2>();
    if (!document->load(m_path, QString(), false)) {
        warning(document->errorText());
        return;
    }
    for (const XMLElement& group : document->documentElement()->children())
        if (group.hasTag("group"))
            m_classes.push_back(std::make_unique<PropertyValueGroupClass>(group));
    m_document = std::move(document);
}

void PropertyValueGroupFile::warning(const QString& text) const
{
    qWarning("property groups file %s: %s", qUtf8Printable(m_path), qUtf8Printable(text));
}

void PropertyValueGroups::setGroupFile(const QString& path)
{
    if (path.isEmpty() || path == u"None")
        return;
    const auto held = std::find_if(m_files.begin(), m_files.end(),
                                   [&](const auto& file) { return file.path() == path; });
    if (held != m_files.end()) {
        if (held->isUpToDate()) {
            m_files.splice(m_files.end(), m_files, held);
            return;
        }
        m_files.erase(held);
    }
    m_files.emplace_back(path);
}

const PropertyValueGroupClass* PropertyValueGroups::getGroupClass(const QString& name)
{
    for (auto file = m_files.rbegin(); file != m_files.rend(); ++file)
        for (const auto& groupClass : file->classes())
            if (groupClass->saveName() == name)
                return groupClass.get();
    return nullptr;
}

std::vector<const PropertyValueGroupClass*> PropertyValueGroups::classes()
{
    std::vector<const PropertyValueGroupClass*> found;
    if (!m_files.empty())
        for (const auto& groupClass : m_files.back().classes())
            found.push_back(groupClass.get());
    return found;
}

QString PropertyValueGroupValue::configurationOf(const XMLElement& property) const
{
    return property.attribute("configuration", configuration());
}

void PropertyValueGroupValue::setPropertyValue(const QString& text, bool transaction)
{
    QString value = text;
    PropertyValueGroupEntry entry = m_groupClass->getGroupEntry(value);
    if (entry.isNull()) {
        value = m_groupClass->defaultValue();
        entry = m_groupClass->getGroupEntry(value);
    }
    projectSystem->setProperty(node(), m_groupClass, configuration(), value, transaction);
    if (entry.isNull())
        return;
    for (const XMLElement& property : entry.element()->children())
        if (property.hasTag(PropertyTag))
            projectSystem->setProperty(node(), property.attribute("name"),
                                       configurationOf(property), property.attribute("value"),
                                       transaction);
}

void PropertyValueGroupValue::removeProperty()
{
    projectSystem->removeProperty(node(), m_groupClass, configuration());
    const PropertyValueGroupEntry entry = m_groupClass->getGroupEntry(m_groupClass->defaultValue());
    if (entry.isNull())
        return;
    for (const XMLElement& property : entry.element()->children())
        if (property.hasTag(PropertyTag))
            projectSystem->removeProperty(node(), property.attribute("name"),
                                          configurationOf(property));
}
