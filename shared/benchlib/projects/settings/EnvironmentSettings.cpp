#include "projects/settings/EnvironmentSettings.h"

#include "projects/settings/SettingDefaults.h"
#include "projects/settings/SettingDescription.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <chrono>

using namespace Qt::Literals::StringLiterals;
using namespace SettingRows;
using namespace SettingDefaults;

EnvironmentSettings* environment = nullptr;

namespace {

constexpr auto EmailAddressKey = "/Email Address"_L1;
constexpr qsizetype HistoryLength = 10;

constexpr struct {
    EnvironmentPropertyValue* EnvironmentSettings::*member;
    SettingDescription description;
} Table[] = {
#define SETTING(member, ...) {&EnvironmentSettings::member, __VA_ARGS__},
#include "projects/settings/EnvironmentSettings.inc"
#undef SETTING
};

std::unique_ptr<PropertyClass> makeClass(const SettingDescription& row)
{
    const QString key = row.key.toString();
    if (row.kind == SettingDescription::Kind::Keyed)
        return row.type == Type::IntegerRange
            ? std::make_unique<PropertyClass>(key, row.type, row.minimum, row.maximum)
            : std::make_unique<PropertyClass>(key, row.type);

    auto made = std::make_unique<PropertyClass>(key, row.type, row.page.toString(),
                                                row.group.toString(), row.label.toString(),
                                                row.help.toString(), row.defaultValue.value());
    made->setEnumerates(row.choices.toString().split(u';', Qt::SkipEmptyParts));
    made->setRange(row.minimum, row.maximum);
    made->setSuffix(row.suffix.toString());
    return made;
}

} // namespace

EnvironmentSettings::EnvironmentSettings(QObject* parent) : QObject(parent)
{
    using namespace std::chrono_literals;
    m_saveTimer.setObjectName(u"environment-settings-save-timer"_s);
    m_saveTimer.setInterval(60000ms);
    connect(&m_saveTimer, &QTimer::timeout, this, &EnvironmentSettings::saveSettings);
}

EnvironmentSettings::~EnvironmentSettings() = default;

void EnvironmentSettings::init(const QString& makerPath, const QString& productPath)
{
    m_makerSettings.setPath(makerPath);
    m_settings.setPath(productPath);
    if (QCoreApplication::instance() != nullptr)
        m_saveTimer.start();
}

void EnvironmentSettings::createEntries()
{
    for (const Text page : Pages)
        m_categories.push_back({page.toString(), PropertyValueList()});
    m_values.reserve(static_cast<qsizetype>(std::size(Table)));
    createTable(this, Table);
}

EnvironmentPropertyValue* EnvironmentSettings::createEntry(const SettingDescription& description)
{
    m_classes.push_back(makeClass(description));
    const PropertyClass* made = m_classes.back().get();
    auto* value = new EnvironmentPropertyValue(made, this, this);
    // A keyed setting without its texts has no page to be shown on.
    if (description.kind == SettingDescription::Kind::Internal || made->page().isEmpty())
        m_values.insert(made->saveName(), value);
    else
        registerProperty(made->page(), value);
    return value;
}

QString EnvironmentSettings::readSetting(const PropertyClass* propertyClass) const
{
    return m_settings.readEntry(propertyClass->saveName(), propertyClass->defaultValue());
}

void EnvironmentSettings::writeSetting(const PropertyClass* propertyClass, const QString& text)
{
    m_settings.writeEntry(propertyClass->saveName(), text);
    emit settingChanged(propertyClass->saveName());
}

void EnvironmentSettings::removeSetting(const PropertyClass* propertyClass)
{
    m_settings.removeEntry(propertyClass->saveName());
    emit settingChanged(propertyClass->saveName());
}

void EnvironmentSettings::registerProperty(const QString& category, EnvironmentPropertyValue* value)
{
    m_values.insert(value->propertyClass()->saveName(), value);
    auto found = std::ranges::find(m_categories, category, &Category::name);
    if (found == m_categories.end())
        found = m_categories.insert(found, Category{category, PropertyValueList()});
    found->values.appendUnique(value);
}

EnvironmentPropertyValue* EnvironmentSettings::findProperty(const QString& key) const
{
    return m_values.value(key, nullptr);
}

QStringList EnvironmentSettings::categories() const
{
    QStringList names;
    for (const Category& category : m_categories)
        if (!category.values.isEmpty())
            names.append(category.name);
    return names;
}

const PropertyValueList& EnvironmentSettings::category(const QString& name) const
{
    static const PropertyValueList none;
    const auto found = std::ranges::find(m_categories, name, &Category::name);
    return found == m_categories.end() ? none : found->values;
}

void EnvironmentSettings::addToHistoryStringList(PropertyValue* value, const QString& text,
                                                 Qt::CaseSensitivity sensitivity)
{
    QStringList history = value->toStringList();
    history.removeIf([&](const QString& entry) { return entry.compare(text, sensitivity) == 0; });
    history.prepend(text);
    while (history.size() > HistoryLength)
        history.removeLast();
    value->setValue(history);
}

void EnvironmentSettings::getLastFindSettings(QString& findText, QString& replaceText,
                                              FindOptions& options) const
{
    const QStringList found = findHistory->toStringList();
    const QStringList replaced = replaceHistory->toStringList();
    findText = found.value(0);
    replaceText = replaced.value(0);
    options.setFlag(FindOption::WholeWord, findMatchWholeWord->toBool());
    options.setFlag(FindOption::MatchCase, findMatchCase->toBool());
    options.setFlag(FindOption::RegularExpression, findUseRegExp->toBool());
    options.setFlag(FindOption::SearchUp, findSearchUp->toBool());
}

QString EnvironmentSettings::emailAddress() const
{
    return m_makerSettings.readEntry(EmailAddressKey);
}

void EnvironmentSettings::setEmailAddress(const QString& text)
{
    m_makerSettings.writeEntry(EmailAddressKey, text);
}

void EnvironmentSettings::saveSettings()
{
    m_makerSettings.sync();
    m_settings.sync();
}
