#include "target/control/TargetList.h"

#include "base/HException.h"
#include "base/XMLDocument.h"
#include "projects/settings/GantryBenchEnvironmentSettings.h"
#include "target/TargetInterfaceFactory.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int indent = 2;

[[noreturn]] void fail(const QString& text) { throw HException(text.toStdString()); }

[[noreturn]] void failToParse(const XMLDocument& document)
{
    // The reader knows no columns.
    fail(document.errorText() + u" line: "_s + QString::number(document.errorLine())
         + u" column: 0"_s);
}

} // namespace

TargetList::TargetList(GantryBenchEnvironmentSettings& settings, const QString& defaultFile)
    : m_settings(settings),
      m_defaultFile(defaultFile)
{
}

TargetList::~TargetList() = default;

// Reading ---------------------------------------------------------------------------------------

void TargetList::load()
{
    m_items.clear();
    const QString stored = m_settings.targets->toString();
    if (!stored.isEmpty()) {
        XMLDocument document;
        if (!document.loadFromBytes(stored.toUtf8()))
            failToParse(document);
        addChildren(document);
    }
    takeInDefaults();
}

void TargetList::readDocument(XMLDocument& document, const QString& path)
{
    if (!QFileInfo(path).isReadable())
        fail(u"Cannot open %1 for reading"_s.arg(path));
    if (!document.load(path))
        failToParse(document);
    if (document.documentType() != QLatin1String(DocumentType))
        fail(u"Cannot load %1.<p>The document is not of type %2."_s.arg(
            path, QLatin1String(DocumentType)));
}

void TargetList::addChildren(const XMLDocument& document)
{
    if (document.documentElement() != nullptr && document.documentElement()->hasTag("objects"))
        for (const XMLElement& element : document.documentElement()->children())
            addElement(element);
}

/// Null for a class that isn't known, which is skipped.
TargetInterface* TargetList::addElement(const XMLElement& element)
{
    std::unique_ptr<TargetInterface> target =
        TargetInterfaceFactory::instance()->create(element.tag().constData());
    if (!target)
        return nullptr;
    target->setTitle(element.attribute("name"));
    PropertyValueList properties;
    target->getProperties(properties);
    for (PropertyValue* property : properties) {
        const QByteArray name = property->propertyClass()->saveName().toUtf8();
        if (element.hasAttribute(name.constData()) && !property->readOnly())
            property->setPropertyValue(element.attribute(name.constData()));
    }
    m_items.push_back({QString::fromUtf8(element.tag()), std::move(target)});
    return m_items.back().target.get();
}

void TargetList::takeInDefaults()
{
    XMLDocument document;
    readDocument(document, m_defaultFile);
    QStringList known = m_settings.initialisedTargets->toStringList();
    bool added = false;
    if (document.documentElement() == nullptr)
        return;
    for (const XMLElement& element : document.documentElement()->children()) {
        const QString name = element.attribute("name");
        const QString key = name.isEmpty() ? QString::fromUtf8(element.tag()) : name;
        if (known.contains(key))
            continue;
        known << key;
        addElement(element);
        added = true;
    }
    if (!added)
        return;
    m_settings.initialisedTargets->setValue(known);
    save();
}

void TargetList::importTargetDefinitions(const QString& path)
{
    XMLDocument document;
    readDocument(document, path);
    m_items.clear();
    addChildren(document);
    save();
}

void TargetList::restoreDefaultTargets() { importTargetDefinitions(m_defaultFile); }

// Writing ---------------------------------------------------------------------------------------

void TargetList::write(XMLDocument& document, const TargetInterface* only) const
{
    XMLElement* const objects = document.createElement("objects");
    document.setDocumentElement(objects);
    for (const TargetListItem& item : m_items) {
        if (only != nullptr && item.target.get() != only)
            continue;
        XMLElement* const element = document.createElement(item.className.toUtf8());
        element->setAttribute("name", item.target->title());
        PropertyValueList properties;
        item.target->getProperties(properties);
        for (const PropertyValue* property : properties) {
            const PropertyClass& kind = *property->propertyClass();
            const QString value = property->toString();
            if (!property->readOnly() && value != kind.defaultValue())
                element->setAttribute(kind.saveName().toUtf8(), value);
        }
        objects->appendChild(element);
    }
}

void TargetList::save()
{
    if (m_settings.targets == nullptr)
        fail(u"Cannot write target definition file"_s);
    XMLDocument document;
    write(document);
    m_settings.targets->setValue(QString::fromUtf8(document.toBytes(indent)));
}

void TargetList::exportTargetDefinitions(const QString& path) const
{
    XMLDocument document;
    document.setDocumentType(QLatin1String(DocumentType));
    write(document);
    if (!document.save(path, indent))
        fail(u"Cannot open %1 for writing"_s.arg(path));
}

// Rows ------------------------------------------------------------------------------------------

TargetInterface* TargetList::getTargetInterfaceByName(const QString& name) const
{
    const auto found = std::find_if(m_items.begin(), m_items.end(),
                                    [&](const auto& item) { return item.target->title() == name; });
    return found == m_items.end() ? nullptr : found->target.get();
}

TargetInterface* TargetList::newTarget(const QString& className)
{
    std::unique_ptr<TargetInterface> target =
        TargetInterfaceFactory::instance()->create(className.toLatin1().constData());
    if (!target)
        return nullptr;
    m_items.push_back({className, std::move(target)});
    save();
    return m_items.back().target.get();
}

void TargetList::rename(TargetInterface* target, const QString& title)
{
    target->setTitle(title);
    save();
}

void TargetList::remove(TargetInterface* target)
{
    std::erase_if(m_items, [&](const auto& item) { return item.target.get() == target; });
    save();
}

QString TargetList::copy(const TargetInterface* target) const
{
    XMLDocument document;
    write(document, target);
    return QString::fromUtf8(document.toBytes(indent));
}

TargetInterface* TargetList::paste(const QString& text)
{
    XMLDocument document;
    if (!document.loadFromBytes(text.toUtf8()))
        failToParse(document);
    const XMLElement* const objects = document.documentElement();
    const XMLElement* const element = objects != nullptr ? objects->firstChildElement() : nullptr;
    TargetInterface* const target = element != nullptr ? addElement(*element) : nullptr;
    if (target != nullptr)
        rename(target, u"Copy Of "_s + target->title());
    return target;
}
