#include "shell/actions/BenchAction.h"

#include "projects/settings/EnvironmentSettings.h"
#include "shell/actions/ActionIcon.h"
#include "shell/actions/GUIBuilder.h"

#include <QApplication>
#include <QEvent>
#include <QIcon>
#include <QMenu>
#include <QThread>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

BenchAction::BenchAction(const QString& name, QObject* parent) : QAction(parent)
{
    setObjectName(name);
    if (!name.isEmpty())
        initText(name);
    connect(this, &QAction::triggered, this, [this] {
        const bool shift = QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier);
        if (m_shiftAction && shift && !m_byKey && m_shiftAction->isEnabled())
            m_shiftAction->onActivated();
        else
            onActivated();
    });
}

bool BenchAction::event(QEvent* event)
{
    m_byKey = event->type() == QEvent::Shortcut;
    const bool handled = QAction::event(event);
    m_byKey = false;
    return handled;
}

void BenchAction::initText(const QString& name)
{
    const auto message = [&name](QStringView tag) {
        return guiBuilder ? guiBuilder->message(name + tag.toString()) : QString();
    };
    setPlainText(message(u".text"));
    setMenuText(message(u".menu"));
    setToolTip(message(u".tip"));
    setStatusTip(message(u".tip"));
    setAccel(QKeySequence::fromString(message(u".key")));
    setSecondaryAccel(QKeySequence::fromString(message(u".alt")));
    setIcon(actionIcon(name));
}

void BenchAction::setMenuText(const QString& text)
{
    m_menuText = text;
    setText(realMenuText(m_menuText, m_argument));
}

void BenchAction::setArgument(const QString& text)
{
    m_argument = text;
    setText(realMenuText(m_menuText, m_argument));
}

QString BenchAction::realMenuText(const QString& text, const QString& argument)
{
    if (!text.contains(u"%1"))
        return text;
    return QString(text).replace(u"%1"_s, argument.isEmpty() ? QString() : u' ' + argument);
}

void BenchAction::setAccel(const QKeySequence& keys)
{
    m_accel = keys;
    updateKeys();
}

void BenchAction::setSecondaryAccel(const QKeySequence& keys)
{
    m_secondaryAccel = keys;
    updateKeys();
}

void BenchAction::updateKeys()
{
    QList<QKeySequence> keys;
    for (const QKeySequence& one : {m_accel, m_secondaryAccel})
        if (!one.isEmpty())
            keys.append(one);
    setShortcuts(keys);
}

void BenchAction::setEnabled(bool enabled)
{
    if (enabled == isEnabled())
        return;
    QAction::setEnabled(enabled);
    emit enableChanged(enabled);
}

void BenchAction::activate()
{
    if (isEnabled() && !isCheckable())
        onActivated();
}

void DeferredBenchAction::onActivated()
{
    emit activated();
    whenOutermost();
}

void DeferredBenchAction::whenOutermost()
{
    if (QThread::currentThread()->loopLevel() > 1)
        QTimer::singleShot(0, this, &DeferredBenchAction::whenOutermost);
    else
        emit deferredActivated();
}

PropertyAction::PropertyAction(const QString& name, const QString& key, QObject* parent)
    : BenchAction(name, parent)
{
    bind(environment ? environment->findProperty(key) : nullptr);
}

PropertyAction::PropertyAction(EnvironmentPropertyValue* value, QObject* parent)
    : BenchAction(QString(), parent)
{
    setMenuText(value->propertyClass()->shortDescription());
    setStatusTip(value->propertyClass()->longDescription());
    bind(value);
}

void PropertyAction::bind(EnvironmentPropertyValue* value)
{
    setCheckable(true);
    if (!value) {
        setEnabled(false);
        return;
    }
    setChecked(value->toBool());
    connect(this, &QAction::toggled, value, [value](bool on) { value->setValue(on); });
    connect(value, &EnvironmentPropertyValue::changed, this,
            [this, value] { setChecked(value->toBool()); });
}

MultiAction::MultiAction(const QList<BenchAction*>& actions, QObject* parent)
    : BenchAction(QString(), parent),
      m_actions(actions),
      m_menu(new QMenu)
{
    for (BenchAction* action : m_actions) {
        QAction* entry = m_menu->addAction(action->icon(), action->menuText());
        entry->setEnabled(action->isEnabled());
        connect(entry, &QAction::triggered, this, [this, action] {
            setSelectedAction(action);
            action->activate();
        });
        connect(action, &BenchAction::enableChanged, entry, &QAction::setEnabled);
    }
    setMenu(m_menu);
    setSelectedAction(m_actions.first());
}

MultiAction::~MultiAction() { delete m_menu; }

void MultiAction::setSelectedAction(BenchAction* action)
{
    if (m_selected)
        disconnect(m_selected, &BenchAction::enableChanged, this, nullptr);
    m_selected = action;
    setIcon(action->icon());
    setPlainText(action->iconText());
    setMenuText(action->menuText());
    setToolTip(action->toolTip());
    setEnabled(action->isEnabled());
    connect(action, &BenchAction::enableChanged, this, &BenchAction::setEnabled);
}

void MultiAction::onActivated()
{
    emit activated();
    m_selected->activate();
}
