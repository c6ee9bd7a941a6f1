#pragma once

#include <QComboBox>

class PropertyValue;

/// A field for a text, with those that were entered before it, the most recent first.
class HistoryCombo : public QComboBox {
    Q_OBJECT
public:
    /// The history, a list of texts, isn't owned; others may change it. Without one the field
    /// keeps its own.
    HistoryCombo(PropertyValue* history, int columns, QWidget* parent);

    /// Puts what is entered to the front of the history.
    void remember();

protected:
    void focusInEvent(QFocusEvent* event) override;

private:
    QStringList texts() const;
    void show(const QStringList& texts);

    PropertyValue* m_history;
};
