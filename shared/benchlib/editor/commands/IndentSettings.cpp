#include "editor/commands/IndentSettings.h"

#include "base/TargetConstants.h"
#include "projects/settings/EnvironmentSettings.h"
#include "projects/settings/SettingDescription.h"

#include <QHash>

using namespace Qt::Literals::StringLiterals;

namespace {

const QStringList& languageNames()
{
    static const QStringList names{u"Default"_s, u"Java"_s, u"C and C++"_s, u"Assembly Language"_s};
    return names;
}

QString key(const QString& language, QStringView name)
{
    return u"Text Editor/Indent/"_s + language + u'/' + name.toString();
}

/// A row for each language; the key and the group are put in place by createEntries.
QList<std::pair<QStringView, SettingDescription>> rows()
{
    using namespace SettingRows;
    constexpr Text page = TextEditorPage;
    return {
        {u"Use Tabs",
         yesNo(u"", u"Yes", page, u"", u"Use Tabs",
               u"Whether indentation is made of tabs, as far as they fit.")},
        {u"Tab Size",
         range(u"", u"8", 1, 32, u" columns", page, u"", u"Tab Size", u"How far tabs are apart.")},
        {u"Indent Mode",
         choice(u"", u"Indent", u"None;Indent;Smart", page, u"", u"Indent Mode",
                u"Whether a new line is indented: not at all, as the line above, "
                "or by the blocks around it.")},
        {u"Size",
         range(u"", u"2", 1, 32, u" columns", page, u"", u"Indent Size",
               u"The width of a level of indentation.")},
        {u"Open Brace",
         yesNo(u"", u"Yes", page, u"", u"Indent Opening Brace",
               u"Whether smart indentation indents an opening brace.")},
        {u"Close Brace",
         yesNo(u"", u"Yes", page, u"", u"Indent Closing Brace",
               u"Whether smart indentation indents a closing brace.")},
        {u"Context Lines",
         range(u"", u"40", 1, 1000, u" lines", page, u"", u"Indent Context",
               u"How many lines smart indentation looks back.")},
        {u"Keywords",
         text(StringList, u"", u"", page, u"", u"User Keywords",
              u"Words that are shown as keywords.")},
        {u"Column Guides",
         text(String, u"", u"", page, u"", u"Column Guides",
              u"Columns at which a line is drawn, separated by commas.")},
    };
}

} // namespace

void IndentSettings::createEntries(EnvironmentSettings& settings)
{
    for (const QString& language : languageNames()) {
        const QString group = language + u" Indentation"_s;
        for (auto [name, row] : rows()) {
            const QString saveName = key(language, name);
            row.key = saveName;
            row.group = group;
            settings.createEntry(row);
        }
    }
}

QString IndentSettings::languageOf(const QString& extension)
{
    static const QHash<QString, QString> languages = [] {
        QHash<QString, QString> result{{u"java"_s, u"Java"_s}};
        for (const QString& name : {u"c"_s, u"h"_s, u"cpp"_s, u"cxx"_s, u"cc"_s})
            result.insert(name, u"C and C++"_s);
        for (const QString& name : {u"s"_s, u"asm"_s, u"inc"_s, Get_ASM_FILE_EXTENSION()})
            result.insert(name, u"Assembly Language"_s);
        return result;
    }();
    return languages.value(extension.toLower(), languageNames().first());
}

void IndentSettings::read(const EnvironmentSettings& environment, const QString& language,
                          CodeEditSettings& settings)
{
    const auto value = [&](QStringView name) -> PropertyValue* {
        return environment.findProperty(key(language, name));
    };
    if (!value(u"Tab Size"))
        return;
    settings.useTabs = value(u"Use Tabs")->toBool();
    settings.tabSize = value(u"Tab Size")->toInt();
    settings.indentMode = static_cast<CodeEditSettings::IndentMode>(value(u"Indent Mode")->toInt());
    settings.indentSize = value(u"Size")->toInt();
    settings.openBraceIndent = value(u"Open Brace")->toBool();
    settings.closeBraceIndent = value(u"Close Brace")->toBool();
    settings.contextLines = value(u"Context Lines")->toInt();
    settings.userKeywords = value(u"Keywords")->toStringList();
    settings.columnGuides = CodeEditSettings::columnGuidesFrom(value(u"Column Guides")->toString());
}
