#pragma once

#include "editor/buffer/QCodeBufferPosition.h"
#include "editor/widget/FindOptionButtons.h"

#include <QFrame>

class CodeEdit;
class QLabel;
class QLineEdit;

/// The bar at the bottom of an editor that searches while one types.
class CodeEditFindIncrementalDialog : public QFrame {
    Q_OBJECT
public:
    explicit CodeEditFindIncrementalDialog(CodeEdit* edit, QWidget* parent = nullptr);

    /// Shows the bar; the search begins at the caret, with the selected text if it is of one line.
    void start();
    /// At the bottom of the editor, below the text.
    void place();
    QString status() const;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void find(const QString& text, bool up);
    void step(bool up);
    void showStatus(const QString& text, bool found);
    /// Back to the editor, with the caret at the hit or where it was.
    void finish(bool restoreCaret);

    CodeEdit* m_edit;
    QLineEdit* m_text;
    QLabel* m_status;
    FindOptionButtons m_options;
    QCodeBufferPosition m_start;
};
