#include "app/gantryedit/EditorWindow.h"

#include "app/gantryedit/DocumentMenus.h"
#include "app/gantryedit/FilePlace.h"
#include "app/gantryedit/RecentFiles.h"
#include "app/gantryedit/SearchResults.h"

#include "editor/commands/MacroRecorder.h"
#include "editor/find/CodeEditFindDialog.h"
#include "editor/parsers/LanguageRegistry.h"
#include "editor/widget/CodeEdit.h"
#include "editor/widget/CodeEditPreferences.h"
#include "projects/settings/EnvironmentSettings.h"
#include "projects/settings/SettingDescription.h"
#include "shell/actions/Actions.h"
#include "shell/actions/GUIBuilder.h"
#include "shell/dialogs/FindFilesDialog.h"
#include "shell/windows/FindWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QMouseEvent>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QToolBar>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int MessageMs = 6000;
constexpr QStringView GeometryKey = u"Environment/Editor Window/Geometry";

PropertyValue* geometrySetting()
{
    return environment ? environment->findProperty(GeometryKey.toString()) : nullptr;
}

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

EditorWindow::EditorWindow(QWidget* parent)
    : QMainWindow(parent),
      m_tabs(new QTabWidget(this)),
      m_note(new QLabel(this)),
      m_mode(new QLabel(this)),
      m_language(new QLabel(this)),
      m_encoding(new QLabel(this)),
      m_results(new SearchResults(m_searchLog, this))
{
    m_tabs->setDocumentMode(true);
    m_tabs->setTabsClosable(true);
    m_tabs->setMovable(true);
    m_tabs->tabBar()->installEventFilter(this);
    m_tabs->tabBar()->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_tabs->tabBar(), &QWidget::customContextMenuRequested, this,
            &EditorWindow::showTabMenu);
    setCentralWidget(m_tabs);
    setAcceptDrops(true);
    registerDocumentMenus(*this);
    auto* recent = new RecentFiles(this);
    guiBuilder->registerObject(recent);
    connect(recent, &RecentFiles::chosen, this, [this](const Path& path) { open(path); });
    guiBuilder->populate(menuBar(), u"EditorMenuBar"_s);
    QToolBar* toolBar = addToolBar(tr("Editor"));
    toolBar->setObjectName(u"EditorToolbar"_s);
    toolBar->setMovable(false);
    toolBar->setIconSize(QSize(20, 20));
    guiBuilder->populate(toolBar, u"EditorToolbar"_s);
    for (QLabel* label : {m_language, m_encoding, m_mode, m_note}) {
        label->setMargin(3);
        statusBar()->addPermanentWidget(label);
    }
    addDockWidget(Qt::BottomDockWidgetArea, m_results);
    m_results->hide();
    connect(m_results, &SearchResults::chosen, this,
            [this](const Path& path, int line, int column) {
                if (open(path))
                    current()->editor().setCaretPosition({line - 1, column - 1});
            });
    resize(1000, 700);
    if (const PropertyValue* geometry = geometrySetting())
        restoreGeometry(QByteArray::fromBase64(geometry->toString().toLatin1()));
    makeConnections();
    connect(m_tabs, &QTabWidget::currentChanged, this, [this] {
        if (CodeEdit* edit = current()) {
            edit->setFocus();
            checkDiskState(edit);
        }
        if (m_find)
            m_find->setEdit(current());
        if (m_findWindow)
            m_findWindow->setEdit(current());
        updateState();
    });
    connect(m_tabs, &QTabWidget::tabCloseRequested, this, &EditorWindow::closeTab);
    if (environment) {
        connect(environment, &EnvironmentSettings::settingChanged, this,
                &EditorWindow::settingChanged);
        connect(environment, &EnvironmentSettings::settingChanged, guiBuilder,
                &GUIBuilder::environmentSettingChanged);
    }
    updateState();
}

void EditorWindow::createEntries(EnvironmentSettings& settings)
{
    settings.createEntry(SettingRows::internal(PropertyClass::Type::String, GeometryKey));
    RecentFiles::createEntries(settings);
}

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
        macroRecorder().start();
        updateState();
    });
    on(::actions->macroPauseRecording, [this] {
        if (macroRecorder().state() == MacroRecorder::State::Paused)
            macroRecorder().resume();
        else
            macroRecorder().pause();
        updateState();
    });
    on(::actions->macroStopRecording, [this] {
        macroRecorder().stop();
        updateState();
    });
    on(::actions->macroCancelRecording, [this] {
        macroRecorder().cancel();
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

CodeEdit* EditorWindow::at(int index) const
{
    return qobject_cast<CodeEdit*>(m_tabs->widget(index));
}

CodeEdit* EditorWindow::current() const { return at(m_tabs->currentIndex()); }

CodeEdit* EditorWindow::addEdit()
{
    auto* edit = new CodeEdit;
    connect(edit, &CodeEdit::finished, this, &EditorWindow::updateState);
    for (const auto signal : {&CodeEdit::message, &CodeEdit::note, &CodeEdit::error})
        connect(edit, signal, this, &EditorWindow::showMessage);
    connect(edit, &CodeEdit::commandRequested, this, [this](EditCommand command) {
        if (command == EditCommand::find || command == EditCommand::replace)
            showFind(command == EditCommand::replace);
    });
    connect(edit, &CodeEdit::contextMenuRequested, this, [this](QPoint at, bool overMargin) {
        QMenu menu(this);
        guiBuilder->populate(&menu, overMargin ? u"EditorMarginMenu"_s : u"EditorTextMenu"_s);
        menu.exec(at);
    });
    for (const auto signal :
         {&CodeEditor::modStateChanged, &CodeEditor::renamed, &CodeEditor::saved})
        connect(&edit->editor(), signal, this, [this, edit] { updateTab(edit); });
    connect(&edit->editor(), &CodeEditor::renamed, this, [edit] {
        RecentFiles::add(edit->editor().filename());
        if (environment)
            CodeEditPreferences::apply(*environment, *edit);
    });
    return edit;
}

void EditorWindow::showEdit(CodeEdit* edit)
{
    if (environment)
        CodeEditPreferences::apply(*environment, *edit);
    m_tabs->setCurrentIndex(m_tabs->addTab(edit, QString()));
    updateTab(edit);
}

void EditorWindow::newDocument()
{
    CodeEdit* edit = addEdit();
    edit->editor().setFilename(Path(u"Untitled %1"_s.arg(++m_untitled)), false);
    edit->editor().setText(QString());
    showEdit(edit);
}

bool EditorWindow::open(const Path& path)
{
    if (CodeEdit* const edit = editOf(path.osPath())) {
        m_tabs->setCurrentWidget(edit);
        return true;
    }
    CodeEdit* edit = addEdit();
    if (!edit->load(path)) {
        delete edit;
        return false;
    }
    RecentFiles::add(path);
    showEdit(edit);
    return true;
}

bool EditorWindow::open(const FilePlace& place)
{
    const QFileInfo info(place.path);
    if (!info.exists() && info.dir().exists()) {
        CodeEdit* edit = addEdit();
        edit->editor().setText(QString());
        edit->startAs(Path(info.absoluteFilePath()));
        showEdit(edit);
        showMessage(tr("%1 is a new file").arg(info.fileName()));
        return true;
    }
    if (!open(Path(info.absoluteFilePath())))
        return false;
    if (place.line > 0)
        current()->editor().setCaretPosition({place.line - 1, place.column - 1});
    return true;
}

void EditorWindow::reload(const QString& encoding)
{
    CodeEdit* const edit = current();
    if (!edit)
        return;
    if (edit->modified()
        && QMessageBox::question(
               this, QApplication::applicationName(),
               tr("Do you want to load %1 again and lose your changes?").arg(edit->fileName()))
            != QMessageBox::Yes)
        return;
    const QCodeBufferPosition caret = edit->editor().caret();
    if (edit->editor().load(edit->editor().filename(), encoding))
        edit->editor().setCaretPosition(caret);
}

void EditorWindow::openByDialog()
{
    const QString folder = current() ? QFileInfo(current()->fileName()).path() : QString();
    for (const QString& path : QFileDialog::getOpenFileNames(this, tr("Open File"), folder))
        open(Path(path));
}

bool EditorWindow::closeTab(int index)
{
    CodeEdit* const edit = at(index);
    if (!edit || !edit->close(false))
        return false;
    m_tabs->removeTab(index);
    edit->deleteLater();
    return true;
}

bool EditorWindow::closeAll(bool uneditedOnly, const CodeEdit* except)
{
    for (int i = m_tabs->count() - 1; i >= 0; --i)
        if (at(i) != except && !(uneditedOnly && at(i)->modified()) && !closeTab(i))
            return false;
    return true;
}

bool EditorWindow::saveAll()
{
    bool good = true;
    for (int i = 0; i < m_tabs->count(); ++i)
        good = (!at(i)->modified() || at(i)->save()) && good;
    return good;
}

/// In a dialog or in the window that stays, as the user has set.
void EditorWindow::showFind(bool replacing)
{
    if (environment && environment->useFindAndReplaceWindow->toBool()) {
        findWindow()->setMode(replacing ? FindWindow::Mode::Replace : FindWindow::Mode::Find);
        findWindow()->start();
        return;
    }
    if (!m_find)
        m_find = new CodeEditFindDialog(current(), replacing, this);
    m_find->setEdit(current());
    m_find->setReplacing(replacing);
    m_find->takeTextFromEdit();
    m_find->show();
    m_find->raise();
}

FindWindow* EditorWindow::findWindow()
{
    if (!m_findWindow) {
        m_findWindow = new FindWindow(m_searchLog, this);
        addDockWidget(Qt::RightDockWidgetArea, m_findWindow);
        connect(m_findWindow, &FindWindow::searchStarted, this, [this] { m_searchLog.clear(); });
        connect(m_findWindow, &FindWindow::searchFinished, m_results, &SearchResults::refresh);
        m_findWindow->setOpenEditors([this](const QString& path) -> CodeEditor* {
            CodeEdit* const edit = editOf(path);
            return edit ? &edit->editor() : nullptr;
        });
    }
    m_findWindow->setEdit(current());
    if (const CodeEdit* edit = current()) {
        const QString word = edit->editor().wordUnder(edit->editor().caret());
        if (!word.isEmpty())
            m_findWindow->setText(word);
    }
    return m_findWindow;
}

CodeEdit* EditorWindow::editOf(const QString& path) const
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    for (int i = 0; i < m_tabs->count(); ++i)
        if (!canonical.isEmpty() && QFileInfo(at(i)->fileName()).canonicalFilePath() == canonical)
            return at(i);
    return nullptr;
}

void EditorWindow::findInFiles()
{
    if (!m_findFiles) {
        m_findFiles = new FindFilesDialog(m_searchLog, this);
        connect(m_findFiles, &FindFilesDialog::started, this, [this] { m_searchLog.clear(); });
        connect(m_findFiles, &FindFilesDialog::finished, m_results, &SearchResults::refresh);
    }
    if (const CodeEdit* edit = current()) {
        const QString word = edit->editor().wordUnder(edit->editor().caret());
        if (!word.isEmpty())
            m_findFiles->setText(word);
        if (edit->editor().isNamed())
            m_findFiles->setFolder(QFileInfo(edit->fileName()).path());
    }
    m_findFiles->show();
    m_findFiles->raise();
}

void EditorWindow::closeEvent(QCloseEvent* event)
{
    event->setAccepted(closeAll(false, nullptr));
    // Searches run below this event.
    if (event->isAccepted() && m_findFiles)
        m_findFiles->close();
    if (event->isAccepted() && m_findWindow)
        m_findWindow->stop();
    if (PropertyValue* geometry = geometrySetting(); geometry && event->isAccepted())
        geometry->setValue(QString::fromLatin1(saveGeometry().toBase64()));
}

/// The middle button closes a tab.
bool EditorWindow::eventFilter(QObject* object, QEvent* event)
{
    if (object == m_tabs->tabBar() && event->type() == QEvent::MouseButtonRelease) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        const int tab = m_tabs->tabBar()->tabAt(mouse->position().toPoint());
        if (mouse->button() == Qt::MiddleButton && tab >= 0) {
            closeTab(tab);
            return true;
        }
    }
    return QMainWindow::eventFilter(object, event);
}

void EditorWindow::showTabMenu(QPoint point)
{
    const int tab = m_tabs->tabBar()->tabAt(point);
    if (tab < 0)
        return;
    m_tabs->setCurrentIndex(tab);
    QMenu menu(this);
    guiBuilder->populate(&menu, u"EditorTabMenu"_s);
    menu.exec(m_tabs->tabBar()->mapToGlobal(point));
}

void EditorWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void EditorWindow::dropEvent(QDropEvent* event)
{
    event->acceptProposedAction();
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile())
            open(Path(url.toLocalFile()));
}

void EditorWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && current())
        checkDiskState(current());
}

/// Another program may have written the file while this one wasn't looked at.
void EditorWindow::checkDiskState(CodeEdit* edit)
{
    edit->refreshModState();
    if (m_checkingDisk || !edit->editor().changedOnDisk())
        return;
    m_checkingDisk = true;
    CodeEditor& editor = edit->editor();
    const QString name = edit->fileName();
    if (!QFileInfo::exists(name)) {
        editor.acceptDiskState();
        showMessage(tr("%1 has been removed from the disk").arg(name));
    } else {
        const bool asks =
            edit->modified() || !environment || environment->confirmModifiedFileReload->toBool();
        const bool reload = !asks
            || QMessageBox::question(
                   this, QApplication::applicationName(),
                   tr("%1 has been changed by another program.\n\nDo you want to load it again%2?")
                       .arg(name, edit->modified() ? tr(" and lose your changes") : QString()))
                == QMessageBox::Yes;
        const QCodeBufferPosition caret = editor.caret();
        if (reload && editor.load(editor.filename()))
            editor.setCaretPosition(caret);
        else
            editor.acceptDiskState();
    }
    m_checkingDisk = false;
    updateState();
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
    const MacroRecorder::State recording = macroRecorder().state();
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

void EditorWindow::showMessage(const QString& text) { statusBar()->showMessage(text, MessageMs); }

void EditorWindow::settingChanged(const QString& key)
{
    if (!key.startsWith(u"Text Editor/") || key.startsWith(u"Text Editor/Find/"))
        return;
    CodeEditPreferences::applyToAll(*environment);
    for (int i = 0; i < m_tabs->count(); ++i)
        CodeEditPreferences::apply(*environment, *at(i));
}
