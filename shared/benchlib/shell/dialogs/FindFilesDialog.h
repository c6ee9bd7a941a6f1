#pragma once

#include "editor/widget/FindOptionButtons.h"
#include "shell/find/FileSearch.h"

#include <QDialog>

class HistoryCombo;
class QCheckBox;
class QLabel;
class QPushButton;

/// Searching through the files of a folder. The hits go to a log, which isn't owned.
class FindFilesDialog : public QDialog {
    Q_OBJECT
public:
    explicit FindFilesDialog(BuildLogModel& log, QWidget* parent = nullptr);

    void setText(const QString& text);
    void setFolder(const QString& folder);

signals:
    /// Ahead of a search.
    void started();
    void finished(const QString& summary);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void findClicked();
    void browse();
    FileSearch::Request request() const;
    void remember();
    void updateButtons();

    FileSearch m_search;
    bool m_running = false;
    HistoryCombo* m_text;
    HistoryCombo* m_fileTypes;
    HistoryCombo* m_folder;
    FindOptionButtons m_options;
    QCheckBox* m_subfolders;
    QPushButton* m_find;
    QLabel* m_status;
};
