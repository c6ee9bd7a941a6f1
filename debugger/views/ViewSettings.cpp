#include "debugger/views/ViewSettings.h"

#include "projects/settings/EnvironmentSettings.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using Member = EnvironmentPropertyValue* EnvironmentSettings::*;

QString text(Member member, const QString& otherwise)
{
    const EnvironmentPropertyValue* const value = environment ? environment->*member : nullptr;
    return value ? value->propertyValue() : otherwise;
}

bool yes(Member member, bool otherwise)
{
    return text(member, otherwise ? u"Yes"_s : u"No"_s) == u"Yes";
}

unsigned number(Member member, unsigned otherwise)
{
    bool ok = false;
    const unsigned value = text(member, QString()).toUInt(&ok);
    return ok ? value : otherwise;
}

} // namespace

namespace ViewSettings {

QString defaultVariableDisplayMode()
{
    return text(&EnvironmentSettings::defaultVariableDisplayMode, u"Hexadecimal"_s);
}

QString floatingPointFormat()
{
    return text(&EnvironmentSettings::floatingPointFormatDisplay, u"%g"_s);
}

unsigned arrayElementsPromptSize()
{
    return number(&EnvironmentSettings::arrayElementsPromptSize, 256);
}

unsigned maximumArrayElementsDisplayed()
{
    return number(&EnvironmentSettings::maximumArrayElementsDisplayed, 32);
}

bool displayCharPtrAsString() { return yes(&EnvironmentSettings::displayCharPtrAsString, true); }

bool localsDisplayRegisters() { return yes(&EnvironmentSettings::localsDisplayRegisters, false); }

} // namespace ViewSettings
