#include "cli/PropertyCheck.h"

#include "build/system/BuildSystem.h"
#include "projects/macros/MacroSystem.h"
#include "projects/solution/ProjectSystem.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// A list of choices that is longer than this says nothing.
constexpr qsizetype MostChoices = 12;

const PropertyClass* findClass(const QString& name)
{
    if (const PropertyClass* found = buildSystem->findPropertyClass(name))
        return found;
    if (const PropertyClass* found = projectSystem->propertyClass(name))
        return found;
    return projectSystem->propertyGroups().getGroupClass(name);
}

QString choiceFault(const PropertyClass& propertyClass, const QString& value)
{
    const QStringList& choices = propertyClass.enumerates();
    if (choices.contains(value))
        return {};
    QString text = u"\"%1\" is no value of %2"_s.arg(value, propertyClass.saveName());
    if (choices.size() <= MostChoices)
        text += u", which takes: "_s + choices.join(u", "_s);
    return text;
}

QString numberFault(const PropertyClass& propertyClass, const QString& value)
{
    bool isNumber = false;
    const qlonglong number = value.toLongLong(&isNumber, 0);
    if (!isNumber)
        return u"\"%1\" is no number, as %2 needs"_s.arg(value, propertyClass.saveName());
    const int minimum = propertyClass.minimum();
    const int maximum = propertyClass.maximum();
    if (propertyClass.type() == PropertyClass::Type::IntegerRange
        && (number < minimum || number > maximum))
        return u"%1 is not in the range of %2, %3 to %4"_s.arg(
            value, propertyClass.saveName(), QString::number(minimum), QString::number(maximum));
    return {};
}

} // namespace

QString PropertyCheck::fault(const QString& name, const QString& value)
{
    const PropertyClass* propertyClass = findClass(name);
    if (!propertyClass)
        return u"unknown property "_s + name;
    if (value.isEmpty() || value.contains(u"$("_s) || value == propertyClass->defaultValue())
        return {};
    switch (propertyClass->type()) {
    case PropertyClass::Type::Boolean:
    case PropertyClass::Type::Enumeration: return choiceFault(*propertyClass, value);
    case PropertyClass::Type::Integer:
    case PropertyClass::Type::IntegerHex:
    case PropertyClass::Type::IntegerRange: return numberFault(*propertyClass, value);
    default: return {};
    }
}

void PropertyCheck::useDefaultGroupFile()
{
    projectSystem->propertyGroups().setGroupFile(MacroSystem::replaceMacros(
        macroSystem->globalMacros(true),
        buildSystem->propertyClass("property_groups_file_path")->defaultValue()));
}
