#include "projects/settings/EnvironmentPropertyValue.h"

#include "projects/settings/EnvironmentSettings.h"

EnvironmentPropertyValue::EnvironmentPropertyValue(const PropertyClass* propertyClass,
                                                   EnvironmentSettings* settings, QObject* parent)
    : QObject(parent),
      PropertyValue(propertyClass),
      m_settings(settings)
{
}

QString EnvironmentPropertyValue::propertyValue() const
{
    if (!m_cached) {
        m_value = m_settings->readSetting(propertyClass());
        m_cached = true;
    }
    return m_value;
}

void EnvironmentPropertyValue::setPropertyValue(const QString& text)
{
    if (text == propertyValue())
        return;
    m_value = text;
    m_settings->writeSetting(propertyClass(), text);
    emit changed(this);
}

void EnvironmentPropertyValue::removePropertyValue()
{
    const QString before = propertyValue();
    m_cached = false;
    m_settings->removeSetting(propertyClass());
    if (propertyValue() != before)
        emit changed(this);
}
