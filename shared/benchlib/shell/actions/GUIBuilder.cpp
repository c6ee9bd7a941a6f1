#include "shell/actions/GUIBuilder.h"

#include "projects/settings/EnvironmentSettings.h"
#include "shell/actions/ActionIcon.h"
#include "shell/actions/Actions.h"
#include "shell/actions/WidgetStrip.h"

#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

GUIBuilder* guiBuilder = nullptr;

namespace {

void warn(const QString& text)
{
    qWarning("GUIBuilder::iterateAndPopulate(): %s", qUtf8Printable(text));
}

bool isYes(const QString& text) { return text == u"true" || text == u"yes"; }

/// The colour scheme that is read.
constexpr QStringView ColorSchemeName = u"Office 2007";

} // namespace

GUIBuilder::GUIBuilder(QObject* parent) : QObject(parent) { }

bool GUIBuilder::load(const QString& path)
{
    int line = 0;
    QString text;
    if (!m_description.load(path, &text, &line)) {
        m_error =
            line > 0 ? u"%1:%2: %3"_s.arg(path).arg(line).arg(text) : u"%1: %2"_s.arg(path, text);
        return false;
    }
    readColors();
    return true;
}

void GUIBuilder::readColors()
{
    m_classColors.clear();
    m_widgetColors.clear();
    const QDomElement root = m_description.document().documentElement();
    for (QDomElement scheme = root.firstChildElement(u"colorscheme"_s); !scheme.isNull();
         scheme = scheme.nextSiblingElement(u"colorscheme"_s)) {
        if (scheme.attribute(u"name"_s) != ColorSchemeName)
            continue;
        for (QDomElement child = scheme.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement()) {
            const ColorElement color{child.attribute(u"foreground"_s),
                                     child.attribute(u"background"_s)};
            auto& colors = child.tagName() == u"class" ? m_classColors : m_widgetColors;
            colors.insert(child.attribute(u"name"_s), color);
        }
    }
}

void GUIBuilder::registerObject(QObject* object) { registerObject(object, object->objectName()); }

void GUIBuilder::registerObject(QObject* object, const QString& name)
{
    m_objects.insert(name, object);
}

QObject* GUIBuilder::object(const QString& name) const
{
    if (QObject* const found = m_objects.value(name))
        return found;
    return actions ? actions->find(name) : nullptr;
}

QDomElement GUIBuilder::findElement(const QString& name)
{
    const QDomNodeList parts = m_description.document().elementsByTagName(u"define"_s);
    for (int i = 0; i < parts.size(); ++i)
        if (parts.at(i).toElement().attribute(u"name"_s) == name)
            return parts.at(i).toElement();
    return {};
}

bool GUIBuilder::populate(QWidget* widget, const QString& name)
{
    const QDomElement element = findElement(name);
    if (element.isNull())
        return false;
    iterateAndPopulate(widget, element);
    return true;
}

QStringList GUIBuilder::iterateAndCollect(const QString& tag)
{
    QStringList names;
    const QDomNodeList elements = m_description.document().elementsByTagName(tag);
    for (int i = 0; i < elements.size(); ++i) {
        const QString name = elements.at(i).toElement().attribute(u"name"_s);
        if (!name.isEmpty() && !names.contains(name))
            names.append(name);
    }
    return names;
}

QStringList GUIBuilder::menus() { return iterateAndCollect(u"menu"_s); }

QStringList GUIBuilder::toolBars()
{
    QStringList names;
    for (const QString& name : iterateAndCollect(u"define"_s))
        if (name.endsWith(u"Toolbar"))
            names.append(name);
    return names;
}

void GUIBuilder::iterateAndPopulate(QWidget* widget, const QDomElement& parent)
{
    static const QHash<QString, Handler> handlers = {
        {u"item"_s, &GUIBuilder::addItem},         {u"menu"_s, &GUIBuilder::addMenu},
        {u"dropdown"_s, &GUIBuilder::addDropdown}, {u"option"_s, &GUIBuilder::addOption},
        {u"property"_s, &GUIBuilder::addProperty}, {u"separator"_s, &GUIBuilder::addSeparator},
        {u"space"_s, &GUIBuilder::addSpace},       {u"split"_s, &GUIBuilder::addSplit},
    };
    for (QDomElement child = parent.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        if (const Handler handler = handlers.value(child.tagName()))
            (this->*handler)(widget, child);
        else
            warn(u"bad tag name <"_s + child.tagName());
    }
}

void GUIBuilder::addAction(QWidget* widget, QAction* action)
{
    if (auto* strip = qobject_cast<WidgetStrip*>(widget))
        strip->addAction(action);
    else
        widget->addAction(action);
    auto* toolBar = qobject_cast<QToolBar*>(widget);
    if (!toolBar || !action->menu())
        return;
    if (auto* button = qobject_cast<QToolButton*>(toolBar->widgetForAction(action)))
        button->setPopupMode(qobject_cast<DropdownAction*>(action) ? QToolButton::InstantPopup
                                                                   : QToolButton::MenuButtonPopup);
}

void GUIBuilder::addItem(QWidget* widget, const QDomElement& element)
{
    const QString name = element.attribute(u"name"_s);
    if (name.isEmpty()) {
        warn(u"object without attribute name."_s);
        return;
    }
    if (name.contains(u',')) {
        addMultiAction(widget, name);
        return;
    }
    QObject* const found = object(name);
    if (auto* action = qobject_cast<QAction*>(found)) {
        addAction(widget, action);
        return;
    }
    auto* item = qobject_cast<QWidget*>(found);
    if (!item) {
        warn(u"object "_s + name + u" isn't in the dictionary."_s);
        return;
    }
    if (auto* strip = qobject_cast<WidgetStrip*>(widget)) {
        strip->addWidget(item, element.attribute(u"stretch"_s).toInt());
    } else if (auto* toolBar = qobject_cast<QToolBar*>(widget)) {
        if (isYes(element.attribute(u"stretchable"_s)))
            item->setSizePolicy(QSizePolicy::Expanding, item->sizePolicy().verticalPolicy());
        toolBar->addWidget(item);
    }
}

void GUIBuilder::addMultiAction(QWidget* widget, const QString& names)
{
    QList<BenchAction*> members;
    for (const QString& part : names.split(u',')) {
        const QString name = part.trimmed();
        if (auto* action = qobject_cast<BenchAction*>(object(name)))
            members.append(action);
        else
            warn(u"bench action "_s + name + u" isn't in the dictionary."_s);
    }
    if (!members.isEmpty())
        addAction(widget, new MultiAction(members, widget));
}

void GUIBuilder::addMenu(QWidget* widget, const QDomElement& element)
{
    const QString name = element.attribute(u"name"_s);
    const QString caption = element.attribute(u"caption"_s);
    if (caption.isEmpty())
        qWarning("Empty menu caption");
    auto* menu = qobject_cast<QMenu*>(object(name));
    if (!menu) {
        menu = new QMenu(widget);
        menu->setObjectName(name);
        if (!name.isEmpty())
            registerObject(menu);
    }
    menu->setTitle(caption);
    menu->setToolTipsVisible(false);
    addAction(widget, menu->menuAction());
    iterateAndPopulate(menu, element);
}

void GUIBuilder::addDropdown(QWidget* widget, const QDomElement& element)
{
    const QString actionName = element.attribute(u"action"_s);
    const QString menuName = element.attribute(u"menu"_s);
    auto* action = qobject_cast<QAction*>(object(actionName));
    if (actionName.isEmpty() || !action) {
        warn(actionName.isEmpty()
                 ? u"dropdown without action name."_s
                 : u"bench action "_s + actionName + u" isn't in the dictionary."_s);
        return;
    }
    if (menuName.isEmpty()) {
        warn(u"dropdown without menu name."_s);
        return;
    }
    auto* toolBar = qobject_cast<QToolBar*>(widget);
    if (!toolBar) {
        warn(u"dropdown not on toolbar."_s);
        return;
    }
    auto* menu = qobject_cast<QMenu*>(object(menuName));
    if (!menu) {
        menu = new QMenu(widget);
        menu->setObjectName(menuName);
        populate(menu, menuName);
    }
    auto* button = new QToolButton(toolBar);
    button->setDefaultAction(action);
    button->setMenu(menu);
    button->setPopupMode(QToolButton::MenuButtonPopup);
    toolBar->addWidget(button);
}

void GUIBuilder::addOption(QWidget* widget, const QDomElement& element)
{
    auto* action = new DropdownAction(QString(), widget);
    action->setPlainText(u"Options"_s);
    action->setMenuText(u"Options"_s);
    action->setIcon(actionIcon(u"reveal"_s));
    auto* menu = new QMenu(widget);
    action->setMenu(menu);
    iterateAndPopulate(menu, element);
    addAction(widget, action);
}

void GUIBuilder::addProperty(QWidget* widget, const QDomElement& element)
{
    if (!environment)
        return;
    if (EnvironmentPropertyValue* value = environment->findProperty(element.attribute(u"key"_s)))
        addPropertyToWidget(widget, value);
}

PropertyAction* GUIBuilder::addPropertyToWidget(QWidget* widget, EnvironmentPropertyValue* value)
{
    if (value->propertyClass()->type() != PropertyClass::Type::Boolean)
        return nullptr;
    auto* action = new PropertyAction(value, widget);
    m_propertyActions[value->propertyClass()->saveName()].append(action);
    widget->addAction(action);
    return action;
}

void GUIBuilder::environmentSettingChanged(const QString& key)
{
    const EnvironmentPropertyValue* const value =
        environment ? environment->findProperty(key) : nullptr;
    if (!value)
        return;
    for (const QPointer<PropertyAction>& action : m_propertyActions.value(key))
        if (action)
            action->setChecked(value->toBool());
}

void GUIBuilder::addSeparator(QWidget* widget, const QDomElement&)
{
    if (auto* menu = qobject_cast<QMenu*>(widget))
        menu->addSeparator();
    else if (auto* toolBar = qobject_cast<QToolBar*>(widget))
        toolBar->addSeparator();
    else
        warn(u"bad widget for separator"_s);
}

void GUIBuilder::addSpace(QWidget* widget, const QDomElement& element)
{
    if (auto* strip = qobject_cast<WidgetStrip*>(widget))
        strip->addSpace(element.attribute(u"width"_s).toInt());
    else
        warn(u"bad widget for space"_s);
}

void GUIBuilder::addSplit(QWidget* widget, const QDomElement&)
{
    if (auto* strip = qobject_cast<WidgetStrip*>(widget))
        strip->addSplit();
    else
        warn(u"bad widget for space"_s);
}
