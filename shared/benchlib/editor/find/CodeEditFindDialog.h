#pragma once

#include "editor/commands/TextSearch.h"
#include "editor/widget/FindOptionButtons.h"

#include <QDialog>

class CodeEdit;
class HistoryCombo;
class QGroupBox;
class QLabel;
class QPushButton;
class QRadioButton;

/// Finding and replacing in one document.
class CodeEditFindDialog : public QDialog {
    Q_OBJECT
public:
    CodeEditFindDialog(CodeEdit* edit, bool replacing, QWidget* parent = nullptr);

    /// Goes on with another document.
    void setEdit(CodeEdit* edit);
    void setReplacing(bool replacing);
    /// Takes the selected text of one line, or the word at the caret, for the text to find.
    void takeTextFromEdit();

signals:
    void find();
    void replace();
    void markAll();
    void replaceAll();

private:
    void updateButtons();
    LastSearch search() const;
    /// Remembers the texts and options, in the histories too.
    void addCurrentToHistory();
    void findClicked();
    void replaceClicked();
    void replaceAllClicked();
    void markAllClicked();

    CodeEdit* m_edit;
    bool m_replacing = false;
    HistoryCombo* m_findText;
    QLabel* m_replaceLabel;
    HistoryCombo* m_replaceText;
    FindOptionButtons m_options;
    QGroupBox* m_scope;
    QRadioButton* m_selection;
    QRadioButton* m_wholeFile;
    QPushButton* m_findNext;
    QPushButton* m_replaceButton;
    QPushButton* m_markAll;
    QPushButton* m_replaceAll;
    QLabel* m_status;
};
