#pragma once

#include <QFrame>

class QGraphicsOpacityEffect;
class QLabel;
struct DiagnosticData;

/// What a tool said of a line, shown below it.
class DiagnosticPopup : public QFrame {
    Q_OBJECT
public:
    explicit DiagnosticPopup(QWidget* parent);

    /// Below the line whose top left corner that is.
    void showMessage(const DiagnosticData& diagnostic, QPoint corner, int lineHeight);
    void setBold(bool bold);
    /// Below 1 the text under the popup can be read.
    void setOpacity(double opacity);

private:
    QLabel* m_label;
    QGraphicsOpacityEffect* m_effect;
};
