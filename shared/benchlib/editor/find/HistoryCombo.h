#pragma once

#include <QComboBox>

class PropertyValue;

/// A field for a text, with those that were entered before it, the most recent first.
class HistoryCombo : public QComboBox {
    Q_OBJECT
public:
    /// The history is a list of texts that others may change too. It isn't owned; null for none.
    HistoryCombo(PropertyValue* history, int columns, QWidget* parent);

    /// Puts what is entered to the front of the history.
    void remember();
    void showPopup() override;

protected:
    void focusInEvent(QFocusEvent* event) override;

private:
    void readHistory();

    PropertyValue* m_history;
};
