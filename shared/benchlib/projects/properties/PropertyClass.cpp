#include "projects/properties/PropertyClass.h"

#include "base/XMLElement.h"
#include "projects/properties/StringProvider.h"

#include <algorithm>
#include <array>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::array TypeNames = {
    "Boolean"_L1,     "Integer"_L1,      "IntegerHex"_L1, "IntegerRange"_L1,   "String"_L1,
    "FileName"_L1,    "ProjFileName"_L1, "StringList"_L1, "DirPath"_L1,        "DirPathList"_L1,
    "Enumeration"_L1, "Color"_L1,        "Font"_L1,       "FixedPitchFont"_L1, "Custom"_L1,
};
static_assert(TypeNames.size() == static_cast<std::size_t>(PropertyClass::Type::Custom) + 1);

QStringList choices(const QString& text) { return text.split(u';', Qt::SkipEmptyParts); }

/// Limits are written as unsigned numbers, decimal or with "0x"; those beyond an int stand for the
/// largest one.
int limit(const QString& text)
{
    constexpr uint largest = std::numeric_limits<int>::max();
    bool decimal = false;
    uint number = text.toUInt(&decimal);
    if (!decimal)
        number = text.toUInt(nullptr, 0);
    return static_cast<int>(std::min(number, largest));
}

} // namespace

PropertyClass::PropertyClass(const QString& saveName, Type type, const QString& page,
                             const QString& group, const QString& shortDescription,
                             const QString& longDescription, const QString& defaultValue)
    : m_saveName(saveName),
      m_group(group),
      m_shortDescription(shortDescription),
      m_longDescription(longDescription),
      m_defaultValue(defaultValue),
      m_page(page),
      m_type(type)
{
}

PropertyClass::PropertyClass(const QString& saveName, Type type, int minimum, int maximum,
                             const QString& page, const QString& group,
                             const QString& shortDescription, const QString& longDescription,
                             int defaultValue)
    : PropertyClass(saveName, type, page, group, shortDescription, longDescription,
                    QString::number(defaultValue))
{
    setRange(minimum, maximum);
}

PropertyClass::PropertyClass(const QString& saveName, Type type, const QStringList& enumerates,
                             const QString& page, const QString& group,
                             const QString& shortDescription, const QString& longDescription,
                             const QString& defaultValue)
    : PropertyClass(saveName, type, page, group, shortDescription, longDescription, defaultValue)
{
    m_enumerates = enumerates;
}

PropertyClass::PropertyClass(const QString& saveName, const QString& page, const QString& group,
                             const QString& shortDescription, const QString& longDescription,
                             bool defaultValue)
    : PropertyClass(saveName, Type::Boolean, page, group, shortDescription, longDescription,
                    defaultValue ? u"Yes"_s : u"No"_s)
{
}

PropertyClass::PropertyClass(const XMLElement& description)
    : m_saveName(description.attribute("name")),
      m_group(description.attribute("group")),
      m_shortDescription(description.attribute("short")),
      m_longDescription(description.attribute("long")),
      m_defaultValue(description.attribute("default")),
      m_specialValueText(description.attribute("specialvalue")),
      m_enumerates(choices(description.attribute("enumeration"))),
      m_minimum(limit(description.attribute("minimum"))),
      m_maximum(limit(description.attribute("maximum")))
{
    typeFromName(description.attribute("type"), m_type);
}

PropertyClass::PropertyClass(const QString& saveName, Type type)
    : m_saveName(saveName),
      m_type(type)
{
    readProvider();
    if (stringProvider != nullptr)
        setRange(stringProvider->string(saveName + ".minimum"_L1).toInt(),
                 stringProvider->string(saveName + ".maximum"_L1).toInt());
}

PropertyClass::PropertyClass(const QString& saveName, Type type, int minimum, int maximum)
    : m_saveName(saveName),
      m_type(type),
      m_minimum(minimum),
      m_maximum(maximum)
{
    readProvider();
}

void PropertyClass::readProvider()
{
    if (stringProvider == nullptr)
        return;
    const auto text = [this](QLatin1StringView part) {
        return stringProvider->string(m_saveName + part);
    };
    m_page = text(".page"_L1);
    m_group = text(".group"_L1);
    m_shortDescription = text(".short"_L1);
    m_longDescription = text(".long"_L1);
    m_defaultValue = text(".default"_L1);
    m_enumerates = choices(text(".enumerates"_L1));
    m_suffix = text(".suffix"_L1);
}

QString PropertyClass::typeName(Type type) { return TypeNames.at(static_cast<std::size_t>(type)); }

bool PropertyClass::typeFromName(const QString& name, Type& type)
{
    const auto found = std::ranges::find(TypeNames, name);
    if (found == TypeNames.end())
        return false;
    type = static_cast<Type>(found - TypeNames.begin());
    return true;
}

const QStringList& PropertyClass::enumerates() const
{
    static const QStringList noAndYes = {u"No"_s, u"Yes"_s};
    return m_type == Type::Boolean && m_enumerates.isEmpty() ? noAndYes : m_enumerates;
}

void PropertyClass::setRange(int minimum, int maximum)
{
    m_minimum = minimum;
    m_maximum = maximum;
}

void PropertyClassList::appendUnique(const PropertyClass* propertyClass)
{
    if (!contains(propertyClass))
        append(propertyClass);
}
