// The parts of the property model that need Qt's GUI types, apart so that programs without a
// display don't link them.

#include "projects/properties/PropertyValue.h"

#include <QAction>
#include <QActionGroup>
#include <QColor>
#include <QFont>

namespace {

/// "#rrggbb"; empty for an invalid colour, which then reads as the default.
QString encodeColor(const QColor& color)
{
    return color.isValid() ? color.name(QColor::HexRgb) : QString();
}

} // namespace

PropertyClass::PropertyClass(const QString& saveName, const QString& page, const QString& group,
                             const QString& shortDescription, const QString& longDescription,
                             const QColor& defaultValue)
    : PropertyClass(saveName, Type::Color, page, group, shortDescription, longDescription,
                    encodeColor(defaultValue))
{
}

QColor PropertyValue::toColor() const { return QColor(toString()); }

QFont PropertyValue::toFont(const QFont& fallback) const
{
    const QString description = toString();
    QFont font;
    return !description.isEmpty() && font.fromString(description) ? font : fallback;
}

void PropertyValue::setValue(const QColor& value) { setPropertyValue(encodeColor(value)); }

void PropertyValue::setValue(const QFont& value) { setPropertyValue(value.toString()); }

QActionGroup* PropertyValue::actionGroup(QObject* parent)
{
    auto* group = new QActionGroup(parent);
    const QStringList& choices = m_class->enumerates();
    for (int index = 0; index < choices.size(); ++index) {
        QAction* action = group->addAction(choices[index]);
        action->setCheckable(true);
        action->setChecked(index == toInt());
        action->setData(index);
    }
    QObject::connect(group, &QActionGroup::triggered, group,
                     [this](const QAction* action) { setValue(action->data().toInt()); });
    return group;
}
