#pragma once

#include <QFrame>

class QHBoxLayout;

/// Widgets in a row, such as the top of a window.
class WidgetStrip : public QFrame {
    Q_OBJECT
public:
    explicit WidgetStrip(QWidget* parent = nullptr);

    /// A widget with a stretch above 0 takes its share of the room that is left.
    void addWidget(QWidget* widget, int stretch = 0);
    /// A button for an action.
    void addAction(QAction* action);
    void addSpace(int width);
    void addSplit();

private:
    QHBoxLayout* m_layout;
};
