#include "app/gantryedit/EditorWindow.h"

#include "app/gantryedit/DocumentMenus.h"
#include "app/gantryedit/FilePlace.h"
#include "app/gantryedit/RecentFiles.h"
#include "app/gantryedit/SearchResults.h"
#include "app/gantryedit/SpellingEntries.h"

#include "editor/find/CodeEditFindDialog.h"
#include "editor/widget/CodeEdit.h"
#include "editor/widget/CodeEditPreferences.h"
#include "projects/settings/EnvironmentSettings.h"
#include "projects/settings/SettingDescription.h"
#include "shell/actions/GUIBuilder.h"
#include "shell/dialogs/FindFilesDialog.h"
#include "shell/windows/FindWindow.h"
#include "shell/windows/MiniToolbar.h"

#include <QApplication>
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
    connect(edit, &CodeEdit::contextMenuRequested, this, [this, edit](QPoint at, bool overMargin) {
        QMenu menu(this);
        if (!overMargin)
            addSpellingEntries(menu, *edit);
        guiBuilder->populate(&menu, overMargin ? u"EditorMarginMenu"_s : u"EditorTextMenu"_s);
        menu.exec(at);
    });
    new MiniToolbar(*edit);
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
        editor.keepAgainstDisk();
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
            editor.keepAgainstDisk();
    }
    m_checkingDisk = false;
    updateState();
}

void EditorWindow::showMessage(const QString& text) { statusBar()->showMessage(text, MessageMs); }

void EditorWindow::settingChanged(const QString& key)
{
    const bool ofEditors = key.startsWith(u"Text Editor/") && !key.startsWith(u"Text Editor/Find/");
    if (!ofEditors && !key.startsWith(u"Environment/Clipboard Ring/"))
        return;
    CodeEditPreferences::applyToAll(*environment);
    for (int i = 0; i < m_tabs->count(); ++i)
        CodeEditPreferences::apply(*environment, *at(i));
}
