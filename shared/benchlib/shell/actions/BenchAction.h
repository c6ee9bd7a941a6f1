#pragma once

#include <QAction>
#include <QKeySequence>
#include <QList>

class EnvironmentPropertyValue;
class QMenu;

/// A command of the user. Its texts, keys and icon are found by its name.
class BenchAction : public QAction {
    Q_OBJECT
public:
    /// An empty name stands for an action without texts, which works all the same.
    explicit BenchAction(const QString& name, QObject* parent = nullptr);

    int id() const { return m_id; }
    void setId(int id) { m_id = id; }

    /// What buttons show.
    void setPlainText(const QString& text) { setIconText(text); }
    /// What menus show; "%1" stands for the argument.
    void setMenuText(const QString& text);
    const QString& menuText() const { return m_menuText; }
    void setArgument(const QString& text);
    /// The argument has a blank ahead of it, unless it is empty.
    static QString realMenuText(const QString& text, const QString& argument);

    void setAccel(const QKeySequence& keys);
    /// Works without a first one, too. Empty for none.
    void setSecondaryAccel(const QKeySequence& keys);
    const QKeySequence& accel() const { return m_accel; }
    const QKeySequence& secondaryAccel() const { return m_secondaryAccel; }

    /// What is done instead while Shift is held. A key with Shift in it stays the action's own.
    void setShiftAction(BenchAction* action) { m_shiftAction = action; }

    void setEnabled(bool enabled);
    /// As if the user had chosen it; not for toggles, nor while it is disabled.
    void activate();

signals:
    void activated();
    void enableChanged(bool enabled);

protected:
    virtual void onActivated() { emit activated(); }
    bool event(QEvent* event) override;

private:
    void initText(const QString& name);
    void updateKeys();

    int m_id = 0;
    QString m_menuText;
    QString m_argument;
    QKeySequence m_accel;
    QKeySequence m_secondaryAccel;
    BenchAction* m_shiftAction = nullptr;
    bool m_byKey = false; ///< while a key carries it out
};

/// A command that mustn't start inside a menu's own event loop: `deferredActivated` comes when only
/// the outermost loop runs.
class DeferredBenchAction : public BenchAction {
    Q_OBJECT
public:
    using BenchAction::BenchAction;

signals:
    void deferredActivated();

protected:
    void onActivated() override;

private:
    void whenOutermost();
};

/// A toggle of a setting.
class PropertyAction : public BenchAction {
    Q_OBJECT
public:
    /// A setting that there isn't leaves the action disabled.
    PropertyAction(const QString& name, const QString& key, QObject* parent = nullptr);
    explicit PropertyAction(EnvironmentPropertyValue* value, QObject* parent = nullptr);

private:
    void bind(EnvironmentPropertyValue* value);
};

/// A button with a menu behind it.
class DropdownAction : public BenchAction {
    Q_OBJECT
public:
    using BenchAction::BenchAction;
};

/// One button for several actions, of which one is selected.
class MultiAction : public BenchAction {
    Q_OBJECT
public:
    /// The actions, at least one, aren't owned.
    explicit MultiAction(const QList<BenchAction*>& actions, QObject* parent = nullptr);
    ~MultiAction() override;

    BenchAction* selectedAction() const { return m_selected; }
    void setSelectedAction(BenchAction* action);

protected:
    void onActivated() override;

private:
    QList<BenchAction*> m_actions;
    BenchAction* m_selected = nullptr;
    QMenu* m_menu;
};
