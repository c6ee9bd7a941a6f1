#pragma once

#include "debugger/views/VariableView.h"

class QDomDocument;
class QDomElement;

/// The expressions that the user watches, each in the scope of its own place in the source.
class WatchVariableView : public VariableView {
public:
    using VariableView::VariableView;

    void update(Frame* frame) override;
    /// Keeps the expressions, without their values.
    void reset() override;

    /// Adds a row at the end; its value comes with the next update.
    VariableViewItem* watch(const QString& expression, const Path& file = {}, int line = -1);
    void remove(VariableViewItem* item);
    void removeAll();

    /// Lines of a source file have moved, counted from 1.
    void linesInserted(const Path& file, int line, int count);
    void linesDeleted(const Path& file, int line, int count);

    /// Adds an element "Watches" to a session's.
    void saveSession(QDomDocument& document, QDomElement& session) const;
    /// Adds what such an element has.
    void loadSession(const QDomElement& watches);

    /// Whether it is the watch window that new watches go to.
    bool isActive() const { return m_active; }
    void setActive(bool active) { m_active = active; }
    /// The user's choice of when the window is updated, as its combo box shows it.
    const QString& updateChoice() const { return m_updateChoice; }
    void setUpdateChoice(const QString& text) { m_updateChoice = text; }

private:
    void loadWatch(const QDomElement& element);

    bool m_active = false;
    QString m_updateChoice;
};
