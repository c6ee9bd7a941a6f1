#pragma once

#include "projects/properties/StringProvider.h"
#include "projects/settings/BenchDescription.h"

#include <QDomElement>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>

class EnvironmentPropertyValue;
class PropertyAction;
class QAction;
class QMenu;
class QWidget;

/// Fills menus, toolbars and strips from the description of the user interface. What is wrong in
/// the description goes to Qt's warnings, and the rest is made all the same.
class GUIBuilder : public QObject, public StringProvider {
    Q_OBJECT
public:
    struct ColorElement {
        QString foreground;
        QString background;
    };

    explicit GUIBuilder(QObject* parent = nullptr);

    /// True if the file was read.
    bool load(const QString& path);
    /// Where and why load failed.
    const QString& errorText() const { return m_error; }

    /// A text by its key, such as "EditUndo.tip"; empty if there is none.
    QString message(const QString& key) const { return m_description.message(key); }
    QString string(const QString& key) const override { return message(key); }

    /// Makes an object known by its own name, or another. It isn't owned.
    void registerObject(QObject* object);
    void registerObject(QObject* object, const QString& name);
    /// Null for a name that there isn't. Actions are known without being registered.
    QObject* object(const QString& name) const;

    /// Fills a menu bar, menu, toolbar or strip from the part of that name. False if there is none.
    bool populate(QWidget* widget, const QString& name);
    /// The names of the menus, and of the toolbars, that are described.
    QStringList menus();
    QStringList toolBars();

    /// An entry that toggles a Boolean setting; nothing for another. Null for nothing.
    PropertyAction* addPropertyToWidget(QWidget* widget, EnvironmentPropertyValue* value);

    /// Colours of the scheme in use, by the name of a class or a widget; empty for another.
    ColorElement classColorElement(const QString& name) const { return m_classColors.value(name); }
    ColorElement widgetColorElement(const QString& name) const
    {
        return m_widgetColors.value(name);
    }

public slots:
    /// Brings the check marks of the setting's entries up to date.
    void environmentSettingChanged(const QString& key);

private:
    using Handler = void (GUIBuilder::*)(QWidget* widget, const QDomElement& element);

    QDomElement findElement(const QString& name);
    QStringList iterateAndCollect(const QString& tag);
    void iterateAndPopulate(QWidget* widget, const QDomElement& parent);
    void addItem(QWidget* widget, const QDomElement& element);
    void addMultiAction(QWidget* widget, const QString& names);
    void addMenu(QWidget* widget, const QDomElement& element);
    void addDropdown(QWidget* widget, const QDomElement& element);
    void addOption(QWidget* widget, const QDomElement& element);
    void addProperty(QWidget* widget, const QDomElement& element);
    void addSeparator(QWidget* widget, const QDomElement& element);
    void addSpace(QWidget* widget, const QDomElement& element);
    void addSplit(QWidget* widget, const QDomElement& element);
    void addAction(QWidget* widget, QAction* action);
    void readColors();

    BenchDescription m_description;
    QString m_error;
    QHash<QString, QPointer<QObject>> m_objects;
    QHash<QString, QList<QPointer<PropertyAction>>> m_propertyActions;
    QHash<QString, ColorElement> m_classColors;
    QHash<QString, ColorElement> m_widgetColors;
};

/// Null until its owner sets it.
extern GUIBuilder* guiBuilder;
