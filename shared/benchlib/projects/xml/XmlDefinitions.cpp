#include "projects/xml/XmlDefinitions.h"

#include "base/TargetConstants.h"
#include "projects/xml/XmlPreprocessor.h"

using namespace Qt::Literals::StringLiterals;

XmlDefinitions defaultXmlDefinitions()
{
    return {
        {u"ide"_s, Get_BENCH_NAME()},
        {u"platform"_s, Get_PLATFORM()},
        {u"release"_s, Get_SOFTWARE_RELEASE()},
        {u"host_os"_s, u"solaris"_s},
        {u"build"_s, u"RELEASE"_s},
        {u"host"_s, u"UNIX"_s},
    };
}

MacroMap macrosForXml(const QString& list)
{
    const MacroMap system = macroSystem != nullptr ? macroSystem->systemMacros() : MacroMap();
    return MacroSystem::overwriteMacros(
        system, MacroSystem::macrosFromStringList(MacroSystem::stringListFromString(list)));
}
