#include "editor/widget/CodeEditPreferences.h"

#include "editor/commands/IndentSettings.h"
#include "editor/parsers/SpellChecker.h"
#include "editor/widget/CodeEdit.h"
#include "projects/settings/EnvironmentSettings.h"

#include <QFontDatabase>

#include <memory>

namespace {

/// The colours are those of the scheme that is named first.
void applyColors(const EnvironmentSettings& settings)
{
    const QStringList colors = settings.colorScheme->toStringList();
    CodeEdit::setColorScheme(colorSchemeNamed(colors.value(0)));
}

void applySpelling(bool wanted)
{
    static std::unique_ptr<HunspellSpellChecker> checker;
    if (wanted && !checker)
        checker = HunspellSpellChecker::loadDefault();
    SpellChecker::setCurrent(wanted ? checker.get() : nullptr);
}

} // namespace

void CodeEditPreferences::applyToAll(const EnvironmentSettings& settings)
{
    CodeDocument::setUndoMode(static_cast<CodeDocument::UndoMode>(settings.undoMode->toInt()));
    CodeDocument::setBackupFileDepth(settings.backupFileDepth->toInt());
    CodeEditor::setCodeTemplates(CodeTemplate::listFrom(settings.codeTemplates->toStringList()));
    clipboardRing().setMaximumSize(settings.clipboardRingMaxEntries->toInt());
    applySpelling(settings.spellChecking->toBool());
    applyColors(settings);
}

void CodeEditPreferences::restoreClipboardRing(const EnvironmentSettings& settings)
{
    if (settings.clipboardRingSave->toBool())
        clipboardRing().setTexts(settings.clipboardRingContents->toStringList());
}

void CodeEditPreferences::keepClipboardRing(EnvironmentSettings& settings)
{
    // The settings are read at every start: a text that was copied as a whole doesn't belong there.
    constexpr qsizetype longestKept = 100'000;
    QStringList kept;
    if (settings.clipboardRingSave->toBool())
        for (const QString& text : clipboardRing().texts())
            if (text.size() <= longestKept)
                kept.append(text);
    settings.clipboardRingContents->setValue(kept);
}

void CodeEditPreferences::apply(const EnvironmentSettings& settings, CodeEdit& edit)
{
    CodeEditSettings values;
    const QString extension = edit.editor().filename().extension();
    IndentSettings::read(settings, IndentSettings::languageOf(extension), values);
    values.hideCursor = settings.hideCursorWhenTyping->toBool();
    values.expandTemplates = settings.autoExpandTemplates->toBool();
    values.virtualSpace = settings.enableVirtualSpace->toBool();
    values.editReadOnly = settings.editReadOnly->toBool();
    values.columnModeTab = settings.columnModeTab->toBool();
    values.cutAction = static_cast<CodeEditSettings::LineAction>(settings.cutAction->toInt());
    values.copyAction = static_cast<CodeEditSettings::LineAction>(settings.copyAction->toInt());
    values.deleteTrailingSpaceOnSave = settings.deleteTrailingSpaceOnSave->toBool();
    values.cleanupTabsOnSave =
        static_cast<CodeEditSettings::TabCleanup>(settings.cleanupTabsOnSave->toInt());
    values.marginsEnabled = settings.marginsEnabled->toBool();
    values.leftMargin = settings.marginsLeft->toInt();
    values.rightMargin = settings.marginsRight->toInt();
    values.topMargin = settings.marginsTop->toInt();
    values.bottomMargin = settings.marginsBottom->toInt();
    values.mateMatching =
        static_cast<CodeEditSettings::MateMatching>(settings.mateMatchingMode->toInt());
    edit.editor().setSettings(values);
    if (CodeEditParser* parser = edit.editor().parser())
        parser->setUserKeywords(values.userKeywords);

    const QFont fallback = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    edit.setFonts(settings.textEditorFont->toFont(fallback));
    edit.setCaretStyles(CodeEdit::decodeCaretStyle(settings.insertCaretStyle->toString()),
                        CodeEdit::decodeCaretStyle(settings.overwriteCaretStyle->toString()));
    edit.setLineNumberMode(static_cast<CodeEdit::LineNumberMode>(settings.lineNumberMode->toInt()));
    edit.setIconGutter(settings.iconGutter->toBool());
    edit.setHighlightCaretLine(settings.highlightCursorLine->toBool());
    edit.setDiagnostics(settings.enablePopupDiagnostics->toBool(),
                        settings.boldPopupDiagnostics->toBool());
    edit.setKeypadEdits(settings.numericKeypadEnabled->toBool());
    edit.setMiniToolbar(settings.miniToolbar->toBool());
    edit.setPointerShape(settings.ibeamCursor->toBool() ? Qt::IBeamCursor : Qt::ArrowCursor);
    // The settings have their choices in the order of Qt's.
    edit.setHorizontalScrollBarPolicy(
        static_cast<Qt::ScrollBarPolicy>(settings.hScrollBar->toInt()));
    edit.setVerticalScrollBarPolicy(static_cast<Qt::ScrollBarPolicy>(settings.vScrollBar->toInt()));
    edit.setMouseBehaviour(settings.dragDropEditing->toBool(), settings.copyOnMouseSelect->toBool(),
                           settings.pasteOnMouseMiddleButton->toBool());
}
