#pragma once

#include "editor/commands/TextSearch.h"
#include "editor/widget/FindOptionButtons.h"
#include "shell/find/FileReplacing.h"
#include "shell/find/FileSearch.h"

#include <QDockWidget>

class CodeEdit;
class HistoryCombo;
class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QToolButton;

/// Finding and replacing in a window that stays: in the document that is edited, its selection, or
/// the files of a folder.
class FindWindow : public QDockWidget {
    Q_OBJECT
public:
    enum class Mode { Find, Replace, FindInFiles, ReplaceInFiles };

    /// The log, which isn't owned, takes the hits in files.
    explicit FindWindow(BuildLogModel& log, QWidget* parent = nullptr);

    void setMode(Mode mode);
    Mode mode() const { return m_mode; }
    /// The active document; null for none.
    void setEdit(CodeEdit* edit);
    void setText(const QString& text);
    /// Shows the window, ready for a text to be typed.
    void start();
    void setFolder(const QString& folder);
    /// How replacing in files finds what is open.
    void setOpenEditors(const FileReplacing::OpenEditor& openEditor) { m_openEditor = openEditor; }

    /// Searches for the text as the mode says.
    void doFind(const QString& text);
    void findNext();
    void replaceNext();
    /// In files after a question: what is saved can't be undone.
    void replaceAll();
    /// Ends a search through files.
    void stop();

public slots:
    void findToggled() { setMode(Mode::Find); }
    void replaceToggled() { setMode(Mode::Replace); }
    void findInFilesToggled() { setMode(Mode::FindInFiles); }
    void replaceInFilesToggled() { setMode(Mode::ReplaceInFiles); }

signals:
    /// Around a search through files.
    void searchStarted();
    void searchFinished(const QString& summary);

private:
    void updateAppearance();
    void updateButtons();
    void lookInChanged();
    bool inFiles() const { return m_mode == Mode::FindInFiles || m_mode == Mode::ReplaceInFiles; }
    bool replacing() const { return m_mode == Mode::Replace || m_mode == Mode::ReplaceInFiles; }
    bool inSelection() const;
    LastSearch search() const;
    void remember();
    void startFind();
    void endFind(const QString& summary);

    FileSearch m_fileSearch;
    FileReplacing::OpenEditor m_openEditor;
    CodeEdit* m_edit = nullptr;
    Mode m_mode = Mode::Find;
    bool m_running = false;
    QString m_folder; ///< while another mode doesn't show it
    QButtonGroup* m_modes;
    HistoryCombo* m_text;
    QLabel* m_replaceLabel;
    HistoryCombo* m_replacement;
    QComboBox* m_lookIn;
    QLabel* m_typesLabel;
    HistoryCombo* m_fileTypes;
    QCheckBox* m_searchUp;
    FindOptionButtons m_options;
    QCheckBox* m_subfolders;
    QPushButton* m_find;
    QPushButton* m_replace;
    QPushButton* m_replaceAll;
    QLabel* m_status;
};
