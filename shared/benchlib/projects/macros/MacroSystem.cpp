#include "projects/macros/MacroSystem.h"

#include "base/Path.h"
#include "base/QTx.h"
#include "base/TargetConstants.h"
#include "projects/macros/MacroExpander.h"
#include "projects/properties/PropertyValue.h"

#include <QDateTime>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

MacroSystem* macroSystem = nullptr;

namespace {

/// What is computed at each expansion: a macro's name and its format of the time.
struct DynamicMacro {
    QStringView name;
    QStringView format;
};
constexpr DynamicMacro DynamicMacros[] = {
    {u"Date", u"d MMMM yyyy"}, {u"DateYear", u"yyyy"}, {u"DateMonth", u"MMMM"},
    {u"DateDay", u"d"},        {u"Time", u"hh:mm:ss"}, {u"TimeHour", u"hh"},
    {u"TimeMinute", u"mm"},    {u"TimeSecond", u"ss"},
};

} // namespace

MacroSystem::MacroSystem()
{
    // With an empty value, so that they are found.
    for (const DynamicMacro& macro : DynamicMacros)
        m_system.insert(macro.name.toString(), {});
    m_system.insert(u"HostArch"_s, u"x86"_s);
    m_system.insert(u"HostOS"_s, u"solaris"_s);
    m_system.insert(u"HostEXE"_s, {});
    m_system.insert(u"HostDLL"_s, u".so_solaris_x86"_s);
}

void MacroSystem::setupDefaultSystemMacros(const QString& root)
{
    setSystemMacro(u"BenchMajorVersion"_s, QString::number(Get_RELEASE_MAJOR_NUMBER()));
    setSystemMacro(u"BenchMinorVersion"_s, QString::number(Get_RELEASE_MINOR_NUMBER()));
    setSystemMacro(u"BenchRevision"_s, QString::number(Get_RELEASE_REVISION_NUMBER()));
    setSystemMacro(u"BenchName"_s, Get_BENCH_BRANDING());
    setSystemMacroPath(u"BenchDir"_s, Path(root));
    setSystemMacroPath(
        u"BenchUserDir"_s,
        Path(QTx::userLocalAppDataDirectory(Get_OWNER() + u'/' + Get_PRODUCT_GENERIC_NAME())));
}

void MacroSystem::setupPackageMacros(const QString& packagesDirectory)
{
    setSystemMacroPath(u"PackagesDir"_s, Path(packagesDirectory));
    setSystemMacroPath(u"TargetsDir"_s, Path(packagesDirectory + u"/targets"_s));
    setSystemMacroPath(u"SamplesDir"_s, Path(packagesDirectory + u"/samples"_s));
}

void MacroSystem::setSystemMacro(const QString& name, const QString& value)
{
    m_system.insert(name, value);
}

void MacroSystem::setSystemMacroPath(const QString& name, const Path& path)
{
    setSystemMacro(name, path.osPath());
}

QString MacroSystem::globalMacro(const QString& name) const
{
    return globalMacros(true).value(name);
}

void MacroSystem::setGlobalMacro(const QString& name, const QString& value)
{
    if (m_globalMacros == nullptr)
        return;
    MacroMap macros = globalMacros(false);
    if (value.isEmpty())
        macros.remove(name);
    else
        macros.insert(name, value);
    m_globalMacros->setPropertyValue(stringFromStringList(stringListFromMacros(macros)));
}

MacroMap MacroSystem::globalMacros(bool includeSystem) const
{
    MacroMap macros;
    if (m_globalMacros != nullptr) {
        const QString text = m_globalMacros->propertyValue();
        macros = macrosFromStringList(stringListFromString(
            text.isEmpty() ? m_globalMacros->propertyClass()->defaultValue() : text));
    }
    return includeSystem ? overwriteMacros(m_system, macros) : macros;
}

QString MacroSystem::replaceMacros(const MacroMap& macros, const QString& text)
{
    return MacroExpander(macros).expand(text);
}

bool MacroSystem::dynamicMacro(const QString& name, QString& value)
{
    const auto macro = std::ranges::find(DynamicMacros, name, &DynamicMacro::name);
    if (macro == std::end(DynamicMacros))
        return false;
    value = QDateTime::currentDateTime().toString(macro->format);
    return true;
}

MacroMap MacroSystem::macrosFromStringList(const QStringList& list)
{
    MacroMap macros;
    for (const QString& entry : list)
        macros.insert(entry.section(u'=', 0, 0), entry.section(u'=', 1));
    return macros;
}

QStringList MacroSystem::stringListFromMacros(const MacroMap& macros)
{
    QStringList list;
    for (auto it = macros.constBegin(); it != macros.constEnd(); ++it)
        list.append(it.key().trimmed() + u'=' + it.value());
    return list;
}

MacroMap MacroSystem::overwriteMacros(const MacroMap& base, const MacroMap& over)
{
    MacroMap result = base;
    result.insert(over);
    return result;
}

QString MacroSystem::stringFromStringList(const QStringList& list)
{
    QStringList escaped;
    for (const QString& entry : list)
        escaped.append(escape(entry));
    return escaped.join(u';');
}

QStringList MacroSystem::stringListFromString(const QString& text, bool keepEmpty)
{
    QStringList list;
    QString entry;
    const auto endEntry = [&] {
        if (keepEmpty || !entry.isEmpty())
            list.append(entry);
        entry.clear();
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) == u'\\' && i + 1 < text.size())
            entry.append(text.at(++i));
        else if (text.at(i) == u';')
            endEntry();
        else
            entry.append(text.at(i));
    }
    endEntry();
    return list;
}

QString MacroSystem::escape(const QString& text)
{
    QString result;
    for (const QChar c : text) {
        if (c == u';' || c == u'\\')
            result.append(u'\\');
        result.append(c);
    }
    return result;
}
