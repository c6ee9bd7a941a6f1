#pragma once

#include "base/Path.h"
#include "build/log/BuildLogModel.h"
#include "editor/commands/EditCommand.h"

#include <QMainWindow>

class Actions;
class BenchAction;
class CodeEdit;
class EnvironmentSettings;
struct FilePlace;
class CodeEditFindDialog;
class FindFilesDialog;
class FindWindow;
class QLabel;
class QTabWidget;
class SearchResults;

/// Files in tabs, with the menus of an editor.
class EditorWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit EditorWindow(QWidget* parent = nullptr);

    /// The tab that shows the file. False, with a message shown, if it can't be read.
    bool open(const Path& path);
    /// The same; a file that doesn't exist yet is an empty text that is saved there.
    bool open(const FilePlace& place);
    /// Reads the current file again in another encoding. Asks if changes would get lost.
    void reload(const QString& encoding);
    void newDocument();
    CodeEdit* current() const;
    CodeEdit* at(int index) const;
    QTabWidget* tabs() const { return m_tabs; }
    /// What the settings remember of the window.
    static void createEntries(EnvironmentSettings& settings);

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void makeConnections();
    void connectCommand(BenchAction* action, EditCommand command);
    CodeEdit* addEdit();
    void showEdit(CodeEdit* edit);
    void showTabMenu(QPoint point);
    bool closeTab(int index);
    bool closeAll(bool uneditedOnly, const CodeEdit* except);
    bool saveAll();
    void openByDialog();
    void showFind(bool replacing);
    void findInFiles();
    FindWindow* findWindow();
    CodeEdit* editOf(const QString& path) const;
    void updateTab(CodeEdit* edit);
    void updateState();
    void showMessage(const QString& text);
    void settingChanged(const QString& key);
    void checkDiskState(CodeEdit* edit);

    QTabWidget* m_tabs;
    QLabel* m_note;
    QLabel* m_mode;
    QLabel* m_language;
    QLabel* m_encoding;
    BuildLogModel m_searchLog{BuildLogModel::Kind::Other};
    SearchResults* m_results;
    CodeEditFindDialog* m_find = nullptr;
    FindFilesDialog* m_findFiles = nullptr;
    FindWindow* m_findWindow = nullptr;
    int m_untitled = 0;
    bool m_checkingDisk = false;
};
