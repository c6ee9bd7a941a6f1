// What the actions do in this window, and when they can be done.

#include "app/gantryedit/EditorWindow.h"
#include "app/gantryedit/RecentFiles.h"
#include "app/gantryedit/SearchResults.h"

#include "editor/commands/MacroRecorder.h"
#include "editor/parsers/LanguageRegistry.h"
#include "editor/widget/CodeEdit.h"
#include "shell/actions/Actions.h"
#include "shell/windows/FindWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QTabWidget>

using namespace Qt::Literals::StringLiterals;

namespace {

struct CommandRow {
    BenchAction* Actions::*action;
    EditCommand command;
};

/// The actions that are commands of the editor.
constexpr CommandRow Commands[] = {
    {&Actions::editUndo, EditCommand::undo},
    {&Actions::editRedo, EditCommand::redo},
    {&Actions::editUndoAll, EditCommand::undoAll},
    {&Actions::editRedoAll, EditCommand::redoAll},
    {&Actions::editCut, EditCommand::cut},
    {&Actions::editCutAppend, EditCommand::cutAppend},
    {&Actions::editCutMarked, EditCommand::cutMarked},
    {&Actions::editCutMarkedAppend, EditCommand::cutMarkedAppend},
    {&Actions::editCutLines, EditCommand::cutLines},
    {&Actions::editCutLinesAppend, EditCommand::cutLinesAppend},
    {&Actions::editCopy, EditCommand::copy},
    {&Actions::editCopyAppend, EditCommand::copyAppend},
    {&Actions::editCopyMarked, EditCommand::copyMarked},
    {&Actions::editCopyMarkedAppend, EditCommand::copyMarkedAppend},
    {&Actions::editCopyLines, EditCommand::copyLines},
    {&Actions::editCopyLinesAppend, EditCommand::copyLinesAppend},
    {&Actions::editPaste, EditCommand::paste},
    {&Actions::editPasteAsString, EditCommand::pasteAsString},
    {&Actions::editPasteAsHTML, EditCommand::pasteAsHTML},
    {&Actions::editPasteAsComment, EditCommand::pasteAsComment},
    {&Actions::editPasteAll, EditCommand::pasteAll},
    {&Actions::editCycleClipboardRing, EditCommand::cycleClipboardRing},
    {&Actions::editDelete, EditCommand::del},
    {&Actions::editDeleteWord, EditCommand::deleteWord},
    {&Actions::editDeleteStartOfLine, EditCommand::deleteStartOfLine},
    {&Actions::editDeleteEndOfLine, EditCommand::deleteEndOfLine},
    {&Actions::editDeleteTrailingWhitespace, EditCommand::deleteTrailingWhitespace},
    {&Actions::editSwapAnchors, EditCommand::swapAnchors},
    {&Actions::editInsertFile, EditCommand::insertFile},
    {&Actions::editExpandTemplate, EditCommand::expandTemplate},
    {&Actions::editSelectAll, EditCommand::selectAll},
    {&Actions::editSelectWord, EditCommand::selectWord},
    {&Actions::editTabify, EditCommand::tabify},
    {&Actions::editUntabify, EditCommand::untabify},
    {&Actions::editUppercase, EditCommand::uppercase},
    {&Actions::editLowercase, EditCommand::lowercase},
    {&Actions::editSwitchcase, EditCommand::switchcase},
    {&Actions::editSplitcase, EditCommand::splitcase},
    {&Actions::editCamelcase, EditCommand::camelcase},
    {&Actions::editIndent, EditCommand::lineIndent},
    {&Actions::editOutdent, EditCommand::lineOutdent},
    {&Actions::editJoinLines, EditCommand::joinLines},
    {&Actions::editJoinLinesWithoutSpace, EditCommand::joinLinesWithoutSpace},
    {&Actions::editComment, EditCommand::commentSelection},
    {&Actions::editUncomment, EditCommand::uncommentSelection},
    {&Actions::editSortAscending, EditCommand::sortAscending},
    {&Actions::editSortDescending, EditCommand::sortDescending},
    {&Actions::editToggleVisibleWhitespace, EditCommand::viewWhitespace},
    {&Actions::editTransposeLines, EditCommand::transposeLines},
    {&Actions::editTransposeWords, EditCommand::transposeWords},
    {&Actions::editMatchDelimiter, EditCommand::matchDelimiter},
    {&Actions::editAlignLeft, EditCommand::alignLeft},
    {&Actions::editAlignRight, EditCommand::alignRight},
    {&Actions::editCenter, EditCommand::center},
    {&Actions::editScrollToTop, EditCommand::scrollTop},
    {&Actions::editScrollToMiddle, EditCommand::scrollMiddle},
    {&Actions::editScrollToBottom, EditCommand::scrollBottom},
    {&Actions::editFindIncremental, EditCommand::findIncremental},
    {&Actions::editReplaceNext, EditCommand::replaceNext},
    {&Actions::editReplaceAll, EditCommand::replaceAll},
    {&Actions::editFindNext, EditCommand::findNext},
    {&Actions::editFindPrev, EditCommand::findPrev},
    {&Actions::editFindNextSelected, EditCommand::findNextSelected},
    {&Actions::editGoToLine, EditCommand::gotoLine},
    {&Actions::editToggleReadOnly, EditCommand::toggleReadOnly},
    {&Actions::editIncreaseTextSize, EditCommand::increaseTextSize},
    {&Actions::editDecreaseTextSize, EditCommand::decreaseTextSize},
    {&Actions::editRestoreTextSize, EditCommand::restoreTextSize},
    {&Actions::bookmarkToggle, EditCommand::bookmarkToggle},
    {&Actions::bookmarkNextInDocument, EditCommand::bookmarkNext},
    {&Actions::bookmarkPrevInDocument, EditCommand::bookmarkPrev},
    {&Actions::bookmarkFirstInDocument, EditCommand::bookmarkFirst},
    {&Actions::bookmarkLastInDocument, EditCommand::bookmarkLast},
    {&Actions::bookmarkClearAllInDocument, EditCommand::bookmarkClearAll},
};

/// The file's name, with a mark if it has been changed.
QString title(const CodeEdit& edit)
{
    const QString name = edit.editor().filename().fileName();
    return edit.modified() ? name + u" *"_s : name;
}

/// The same where "&" would be an accelerator's mark.
QString tabText(const CodeEdit& edit) { return title(edit).replace(u'&', u"&&"_s); }

} // namespace

void EditorWindow::makeConnections()
{
    for (const CommandRow& row : Commands)
        connectCommand(::actions->*row.action, row.command);
    const auto on = [this](BenchAction* action, auto&& function) {
        connect(action, &BenchAction::activated, this, function);
    };
    on(::actions->fileNewBlankFile, [this] { newDocument(); });
    on(::actions->fileOpenFile, [this] { openByDialog(); });
    on(::actions->fileClose, [this] { closeTab(m_tabs->currentIndex()); });
    on(::actions->fileSave, [this] {
        if (CodeEdit* edit = current())
            edit->save();
    });
    on(::actions->fileSaveAs, [this] {
        if (CodeEdit* edit = current())
            edit->editor().saveAs();
    });
    on(::actions->fileSaveCopyAs, [this] {
        CodeEdit* edit = current();
        const QString path = edit
            ? QFileDialog::getSaveFileName(this, tr("Save Copy As"), edit->fileName())
            : QString();
        if (!path.isEmpty())
            edit->editor().saveCopyAs(Path(path));
    });
    on(::actions->fileSaveAll, [this] { saveAll(); });
    on(::actions->filePrint, [this] {
        if (CodeEdit* edit = current())
            edit->print();
    });
    on(::actions->filePrintPreview, [this] {
        if (CodeEdit* edit = current())
            edit->printPreview();
    });
    on(::actions->clearFileHistory, [] { RecentFiles::clearAll(); });
    on(::actions->fileCopyFullPath, [this] {
        if (CodeEdit* edit = current())
            QApplication::clipboard()->setText(edit->fileName());
    });
    on(::actions->fileExit, [this] { close(); });
    on(::actions->toolFindInFiles, [this] { findInFiles(); });
    on(::actions->toolReplaceInFiles, [this] {
        findWindow()->setMode(FindWindow::Mode::ReplaceInFiles);
        if (current() && current()->editor().isNamed())
            findWindow()->setFolder(QFileInfo(current()->fileName()).path());
        findWindow()->start();
    });
    on(::actions->editLocateNext, [this] { m_results->locate(1); });
    on(::actions->editLocatePrev, [this] { m_results->locate(-1); });
    on(::actions->editFind, [this] { showFind(false); });
    on(::actions->editReplace, [this] { showFind(true); });
    on(::actions->editFindMarkAll, [this] {
        const LastSearch last = LastSearch::get();
        if (CodeEdit* edit = current())
            edit->editor().markAll(last.text, last.options, false);
    });
    on(::actions->editClearClipboardRing, [] { clipboardRing().clear(); });
    on(::actions->toolCheckSyntax, [this] {
        if (CodeEdit* edit = current())
            edit->checkSyntax();
    });
    on(::actions->macroStartRecording, [this] {
        macroRecorder().startRecording();
        updateState();
    });
    on(::actions->macroPauseRecording, [this] {
        if (macroRecorder().recordingState() == MacroRecorder::State::Paused)
            macroRecorder().resumeRecording();
        else
            macroRecorder().pauseRecording();
        updateState();
    });
    on(::actions->macroStopRecording, [this] {
        macroRecorder().stopRecording();
        updateState();
    });
    on(::actions->macroCancelRecording, [this] {
        macroRecorder().cancelRecording();
        updateState();
    });
    on(::actions->macroPlayRecording, [this] {
        if (CodeEdit* edit = current())
            edit->editor().playRecording();
    });
    on(::actions->windowNext, [this] {
        m_tabs->setCurrentIndex((m_tabs->currentIndex() + 1) % std::max(1, m_tabs->count()));
    });
    on(::actions->windowPrev, [this] {
        const int count = std::max(1, m_tabs->count());
        m_tabs->setCurrentIndex((m_tabs->currentIndex() + count - 1) % count);
    });
    on(::actions->windowCloseAll, [this] { closeAll(false, nullptr); });
    on(::actions->windowCloseAllUnedited, [this] { closeAll(true, nullptr); });
    on(::actions->windowCloseOtherWindows, [this] { closeAll(false, current()); });
}

void EditorWindow::connectCommand(BenchAction* action, EditCommand command)
{
    connect(action, &BenchAction::activated, this, [this, command] {
        if (CodeEdit* edit = current())
            edit->execute(command);
    });
}

void EditorWindow::updateTab(CodeEdit* edit)
{
    const int index = m_tabs->indexOf(edit);
    if (index < 0)
        return;
    m_tabs->setTabText(index, tabText(*edit));
    m_tabs->setTabToolTip(index, edit->fileName());
    updateState();
}

void EditorWindow::updateState()
{
    const CodeEdit* const edit = current();
    for (const CommandRow& row : Commands)
        (::actions->*row.action)->setEnabled(edit && edit->isAvailable(row.command));
    for (BenchAction* action :
         {::actions->fileClose, ::actions->fileSave, ::actions->fileSaveAs,
          ::actions->fileSaveCopyAs, ::actions->fileSaveAll, ::actions->filePrint,
          ::actions->filePrintPreview, ::actions->fileCopyFullPath, ::actions->editFind,
          ::actions->editReplace, ::actions->editFindMarkAll, ::actions->macroPlayRecording,
          ::actions->windowNext, ::actions->windowPrev, ::actions->windowCloseAll,
          ::actions->windowCloseAllUnedited, ::actions->windowCloseOtherWindows})
        action->setEnabled(edit != nullptr);
    ::actions->toolCheckSyntax->setEnabled(edit && edit->canCheckSyntax());
    const MacroRecorder::State recording = macroRecorder().recordingState();
    ::actions->macroStartRecording->setEnabled(recording == MacroRecorder::State::Idle);
    for (BenchAction* action : {::actions->macroPauseRecording, ::actions->macroStopRecording,
                                ::actions->macroCancelRecording})
        action->setEnabled(recording != MacroRecorder::State::Idle);

    if (!edit) {
        setWindowTitle(QApplication::applicationName());
        for (QLabel* label : {m_note, m_mode, m_language, m_encoding})
            label->clear();
        return;
    }
    const CodeEditor& editor = edit->editor();
    const QString name = editor.filename().fileName();
    if (const int index = m_tabs->currentIndex(); m_tabs->tabText(index) != tabText(*edit))
        m_tabs->setTabText(index, tabText(*edit));
    setWindowTitle(title(*edit) + u" - "_s + QApplication::applicationName());
    ::actions->fileClose->setArgument(name);
    ::actions->fileSave->setArgument(name);
    ::actions->fileSaveAs->setArgument(name);
    ::actions->editUndo->setArgument(editor.canUndo() ? editor.undoActions().head()->description()
                                                      : QString());
    ::actions->editRedo->setArgument(editor.canRedo() ? editor.redoActions().head()->description()
                                                      : QString());
    m_note->setText(edit->statusNote());
    m_mode->setText(edit->isReadOnly()                ? tr("Read-only")
                        : CodeEditor::overwriteMode() ? tr("OVR")
                                                      : tr("INS"));
    QString language = languages().parserDescription(editor.parser());
    language.remove(u'&');
    m_language->setText(language.isEmpty() ? tr("Text") : language);
    static const QString endings[] = {u"CR LF"_s, u"LF"_s, u"CR"_s};
    m_encoding->setText(
        u"%1  %2"_s.arg(editor.encoding() == TextEncoding::Default ? u"UTF-8"_s : editor.encoding(),
                        endings[static_cast<int>(editor.lineEnding())]));
}
