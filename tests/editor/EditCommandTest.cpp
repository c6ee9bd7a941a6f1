#include "EditCases.h"
#include "EditorTest.h"

#include "editor/commands/KeyMap.h"
#include "editor/commands/MacroRecorder.h"
#include "editor/commands/TextSearch.h"

#include <QKeySequence>
#include <QSet>

using namespace Qt::Literals::StringLiterals;

namespace {

EditCommand commandOf(const EditCase::Step& step)
{
    EditCommand command = EditCommand::charLeft;
    if (step.kind == EditCase::Step::Kind::Command) {
        EXPECT_TRUE(commandFromName(step.text, command)) << step.text.toStdString();
        return command;
    }
    const QKeyCombination keys = QKeySequence::fromString(step.text)[0];
    const std::optional<EditCommand> mapped =
        KeyMap().command(KeyMap::code(keys.key(), keys.keyboardModifiers()));
    EXPECT_TRUE(mapped) << step.text.toStdString();
    return mapped.value_or(command);
}

TEST(EditCommands, DoWhatTheCasesSay)
{
    int run = 0;
    for (const EditCase& editCase : EditCase::all()) {
        CodeEditorHost host;
        host.setClipboardText(editCase.clipboard);
        CodeEditor editor;
        editor.setHost(&host);
        CodeEditor::setOverwriteMode(false);
        clipboardRing().clear();
        LastSearch().remember();
        prepare(editCase, editor);
        for (const EditCase::Step& step : editCase.steps) {
            if (step.kind != EditCase::Step::Kind::Text) {
                editor.execute(commandOf(step));
                continue;
            }
            for (const QChar c : step.text)
                editor.typeText(c);
        }
        EXPECT_EQ(marked(editor), marked(editCase.after)) << editCase.name.toStdString();
        // Whatever was done leads back to the text that was there.
        editor.undoAll();
        EXPECT_EQ(textOf(editor), editCase.before.text) << editCase.name.toStdString();
        ++run;
    }
    EXPECT_GT(run, 100);
}

TEST(EditCommands, EachHasACase)
{
    // What a window, the debugger or another program's clipboard carries out is tested there.
    const QSet<QString> elsewhere = {
        u"increaseTextSize"_s,
        u"decreaseTextSize"_s,
        u"restoreTextSize"_s,
        u"saveTextSize"_s,
        u"viewWhitespace"_s,
        u"toggleBreakpoint"_s,
        u"toggleBreakpointEnable"_s,
        u"deleteBreakpoint"_s,
        u"findIncremental"_s,
        u"find"_s,
        u"replace"_s,
        u"findNextFunction"_s,
        u"findPrevFunction"_s,
        u"gotoFunction"_s,
        u"checkSyntax"_s,
        u"toggleReadOnly"_s,
        u"gotoLine"_s,
        u"insertFile"_s,
        u"insertTyped"_s,
        u"expandTemplate"_s,
    };
    QSet<QString> used = elsewhere;
    for (const EditCase& editCase : EditCase::all())
        for (const EditCase::Step& step : editCase.steps)
            if (step.kind != EditCase::Step::Kind::Text)
                used.insert(nameOf(commandOf(step)));
    for (int i = 0; i < EditCommandCount; ++i)
        EXPECT_TRUE(used.contains(nameOf(static_cast<EditCommand>(i))))
            << nameOf(static_cast<EditCommand>(i)).toStdString();
}

} // namespace
