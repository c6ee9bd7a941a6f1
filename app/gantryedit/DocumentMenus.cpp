#include "app/gantryedit/DocumentMenus.h"

#include "app/gantryedit/ChoiceMenu.h"
#include "app/gantryedit/EditorWindow.h"

#include "editor/commands/IndentSettings.h"
#include "editor/parsers/LanguageRegistry.h"
#include "editor/widget/CodeEdit.h"
#include "projects/settings/EnvironmentSettings.h"
#include "shell/actions/GUIBuilder.h"

#include <QActionGroup>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

using Choices = ChoiceMenu::Choices;

void add(EditorWindow& window, const QString& name, const ChoiceMenu::Ask& ask,
         const ChoiceMenu::Choose& choose)
{
    guiBuilder->registerObject(new ChoiceMenu(name, ask, choose, &window));
}

void addLanguages(EditorWindow& window)
{
    // The last entry is for a text in no language.
    const QStringList descriptions = languages().registeredParserDescriptions();
    add(
        window, u"SyntaxHighlightingMenu"_s,
        [&window, descriptions] {
            Choices choices{descriptions + QStringList{u"&None"_s}, -1,
                            window.current() != nullptr};
            if (const CodeEdit* edit = window.current())
                choices.current =
                    static_cast<int>(edit->editor().parser() ? descriptions.indexOf(
                                         languages().parserDescription(edit->editor().parser()))
                                                             : descriptions.size());
            return choices;
        },
        [&window, descriptions](int index) {
            if (CodeEdit* edit = window.current())
                edit->setSyntaxHighlight(index < descriptions.size() ? index
                                                                     : CodeEdit::NoSyntaxHighlight);
        });
}

void addLineEndings(EditorWindow& window)
{
    // In the order of CodeDocument::LineEnding.
    static constexpr void (CodeDocument::*setters[])() = {&CodeDocument::setLineEndingCRLF,
                                                          &CodeDocument::setLineEndingLF,
                                                          &CodeDocument::setLineEndingCR};
    add(
        window, u"LineEndingsMenu"_s,
        [&window] {
            const CodeEdit* edit = window.current();
            return Choices{{u"CR LF (&Windows)"_s, u"LF (&Unix)"_s, u"CR (&Mac OS 9)"_s},
                           edit ? static_cast<int>(edit->editor().lineEnding()) : -1,
                           edit && edit->canEdit()};
        },
        [&window](int index) {
            if (CodeEdit* edit = window.current())
                (edit->editor().*setters[index])();
        });
}

Choices encodings(const CodeEdit* edit, bool enabled)
{
    const QStringList names = TextEncoding::commonNames();
    Choices choices{names, -1, edit && enabled};
    if (edit)
        choices.current =
            static_cast<int>(names.indexOf(TextEncoding::commonName(edit->editor().encoding())));
    return choices;
}

void addEncodings(EditorWindow& window)
{
    add(
        window, u"ReloadEncodingMenu"_s,
        [&window] {
            return encodings(window.current(),
                             window.current() && window.current()->editor().isNamed());
        },
        [&window](int index) { window.reload(TextEncoding::commonNames().value(index)); });
    add(
        window, u"SaveEncodingMenu"_s,
        [&window] {
            return encodings(window.current(), window.current() && window.current()->canEdit());
        },
        [&window](int index) {
            if (CodeEdit* edit = window.current())
                edit->editor().setEncoding(TextEncoding::commonNames().value(index));
        });
}

void addColorSchemes(EditorWindow& window)
{
    QStringList names;
    for (const CodeEditColorScheme& scheme : colorSchemes())
        names.append(scheme.name);
    add(
        window, u"ColorSchemeMenu"_s,
        [names] {
            return Choices{names, static_cast<int>(names.indexOf(CodeEdit::colorScheme().name))};
        },
        [names](int index) {
            if (environment)
                environment->colorScheme->setValue(QStringList{names.value(index)});
        });
}

/// A menu of what a setting can be. Of a setting of indentation, for the document's language.
void addSetting(EditorWindow& window, const QString& name,
                const std::function<PropertyValue*()>& find, const QStringList& texts = {})
{
    const auto textsOf = [texts](const PropertyValue& value) {
        QStringList result = texts.isEmpty() ? value.propertyClass()->enumerates() : texts;
        // A width that isn't usual can still be seen.
        if (!texts.isEmpty() && !result.contains(value.toString()))
            result.append(value.toString());
        return result;
    };
    add(
        window, name,
        [find, textsOf] {
            const PropertyValue* value = find();
            if (!value)
                return Choices{};
            const QStringList all = textsOf(*value);
            return Choices{all, static_cast<int>(all.indexOf(value->toString()))};
        },
        [find, textsOf](int index) {
            if (PropertyValue* value = find())
                value->setPropertyValue(textsOf(*value).value(index));
        });
}

void addIndentation(EditorWindow& window)
{
    const auto setting = [&window](const QString& name) {
        return [&window, name]() -> PropertyValue* {
            const CodeEdit* edit = window.current();
            if (!edit || !environment)
                return nullptr;
            return environment->findProperty(
                u"Text Editor/Indent/"_s
                + IndentSettings::languageOf(edit->editor().filename().extension()) + u'/' + name);
        };
    };
    const QStringList widths{u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"8"_s};
    addSetting(window, u"IndentModeMenu"_s, setting(u"Indent Mode"_s));
    addSetting(window, u"IndentSizeMenu"_s, setting(u"Size"_s), widths);
    addSetting(window, u"TabSizeMenu"_s, setting(u"Tab Size"_s), widths);
    addSetting(window, u"UseTabsMenu"_s, setting(u"Use Tabs"_s));
}

} // namespace

void registerDocumentMenus(EditorWindow& window)
{
    addLanguages(window);
    addLineEndings(window);
    addEncodings(window);
    addColorSchemes(window);
    addIndentation(window);
    addSetting(window, u"LineNumbersMenu"_s, []() -> PropertyValue* {
        return environment ? environment->lineNumberMode : nullptr;
    });
}
