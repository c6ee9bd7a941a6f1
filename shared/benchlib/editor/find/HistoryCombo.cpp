#include "editor/find/HistoryCombo.h"

#include "projects/settings/EnvironmentSettings.h"

#include <QLineEdit>

HistoryCombo::HistoryCombo(PropertyValue* history, int columns, QWidget* parent)
    : QComboBox(parent),
      m_history(history)
{
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    // What is looked for is what was typed, not what began like it the last time.
    setCompleter(nullptr);
    setMinimumContentsLength(columns);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    readHistory();
}

/// What is being entered stays as it is.
void HistoryCombo::readHistory()
{
    if (!m_history)
        return;
    const QSignalBlocker quiet(this);
    const QString entered = currentText();
    const int start = lineEdit()->selectionStart();
    const int length = lineEdit()->selectionLength();
    clear();
    addItems(m_history->toStringList());
    setEditText(entered);
    if (start >= 0)
        lineEdit()->setSelection(start, length);
}

void HistoryCombo::remember()
{
    if (m_history)
        EnvironmentSettings::addToHistoryStringList(m_history, currentText());
}

void HistoryCombo::showPopup()
{
    readHistory();
    QComboBox::showPopup();
}

/// The arrow keys go through the texts too.
void HistoryCombo::focusInEvent(QFocusEvent* event)
{
    readHistory();
    QComboBox::focusInEvent(event);
}
