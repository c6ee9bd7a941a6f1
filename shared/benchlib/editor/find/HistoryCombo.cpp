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
    if (history)
        show(history->toStringList());
}

QStringList HistoryCombo::texts() const
{
    QStringList result;
    for (int i = 0; i < count(); ++i)
        result.append(itemText(i));
    return result;
}

/// What is being entered stays as it is.
void HistoryCombo::show(const QStringList& texts)
{
    if (texts == this->texts())
        return;
    const QSignalBlocker quiet(this);
    const QString entered = currentText();
    const int start = lineEdit()->selectionStart();
    const int length = lineEdit()->selectionLength();
    clear();
    addItems(texts);
    setEditText(entered);
    if (start >= 0)
        lineEdit()->setSelection(start, length);
}

void HistoryCombo::remember()
{
    if (m_history) {
        EnvironmentSettings::addToHistoryStringList(m_history, currentText());
        show(m_history->toStringList());
        return;
    }
    QStringList known = texts();
    known.removeAll(currentText());
    known.prepend(currentText());
    show(known);
}

void HistoryCombo::focusInEvent(QFocusEvent* event)
{
    if (m_history)
        show(m_history->toStringList());
    QComboBox::focusInEvent(event);
}
