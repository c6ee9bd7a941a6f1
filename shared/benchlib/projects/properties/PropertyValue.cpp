#include "projects/properties/PropertyValue.h"

#include "projects/macros/MacroSystem.h"

#include <QDebug>

using namespace Qt::Literals::StringLiterals;
using Type = PropertyClass::Type;

namespace {

bool isChoice(const PropertyClass* propertyClass)
{
    return propertyClass->type() == Type::Boolean || propertyClass->type() == Type::Enumeration;
}

/// A form that QString::toInt reads with base 0, negative numbers with their sign in front.
QString toHexString(int value)
{
    const qint64 number = value;
    return number < 0 ? "-0x"_L1 + QString::number(-number, 16)
                      : "0x"_L1 + QString::number(number, 16);
}

} // namespace

QString PropertyValue::toString() const
{
    const QString value = propertyValue();
    return value.isEmpty() ? m_class->defaultValue() : value;
}

bool PropertyValue::toBool() const
{
    const QString value = toString();
    const qsizetype index = m_class->enumerates().indexOf(value);
    if (index == 0 || index == 1)
        return index == 1;
    const QString lower = value.toLower();
    return lower == "true"_L1 || lower == "yes"_L1 || lower == "1"_L1;
}

int PropertyValue::toInt() const
{
    const QString value = toString();
    if (isChoice(m_class))
        return qMax(0, static_cast<int>(m_class->enumerates().indexOf(value)));
    return value.toInt(nullptr, 0);
}

QStringList PropertyValue::toStringList(bool keepEmpty) const
{
    return MacroSystem::stringListFromString(toString(), keepEmpty);
}

QRect PropertyValue::toRect() const
{
    const QStringList numbers = toString().split(u',');
    if (numbers.size() != 4)
        return {};
    return {numbers[0].toInt(), numbers[1].toInt(), numbers[2].toInt(), numbers[3].toInt()};
}

void PropertyValue::setValue(int value)
{
    switch (m_class->type()) {
    case Type::Boolean:
    case Type::Enumeration: {
        const QStringList& choices = m_class->enumerates();
        if (value < 0 || value >= choices.size())
            qWarning("PropertyValue::setValue(int): Setting an enumeration to a value which isn't "
                     "in its enumerates");
        setPropertyValue(choices.value(value));
        break;
    }
    case Type::IntegerHex: setPropertyValue(toHexString(value)); break;
    case Type::Integer:
    case Type::IntegerRange: setPropertyValue(QString::number(value)); break;
    default: qWarning("PropertyValue::setValue(int): Setting a non-integer property"); break;
    }
}

void PropertyValue::setValue(bool value)
{
    if (m_class->type() != Type::Boolean)
        qWarning("PropertyValue::setValue(int): Setting a non-Boolean property");
    setValue(value ? 1 : 0);
}

void PropertyValue::setValue(const QString& value) { setPropertyValue(value); }

void PropertyValue::setValue(const char* value) { setPropertyValue(QString::fromUtf8(value)); }

void PropertyValue::setValue(const QStringList& value)
{
    setPropertyValue(MacroSystem::stringFromStringList(value));
}

void PropertyValue::setValue(const QRect& value)
{
    setPropertyValue(
        u"%1,%2,%3,%4"_s.arg(value.left()).arg(value.top()).arg(value.width()).arg(value.height()));
}

void PropertyValue::setToDefault() { setPropertyValue(m_class->defaultValue()); }
