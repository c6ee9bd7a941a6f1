#pragma once

#include "projects/properties/PropertyValue.h"

#include <QObject>

class EnvironmentSettings;

/// One environment setting. It is read from the settings file at first use, and then kept: what
/// another running instance changes is seen by the next start.
class EnvironmentPropertyValue : public QObject, public PropertyValue {
    Q_OBJECT
public:
    EnvironmentPropertyValue(const PropertyClass* propertyClass, EnvironmentSettings* settings,
                             QObject* parent = nullptr);

    void setPropertyValue(const QString& text) override;
    QString propertyValue() const override;
    /// Takes the setting out of the file, so that it returns to its default.
    void removePropertyValue();

signals:
    void changed(EnvironmentPropertyValue* value);

private:
    EnvironmentSettings* m_settings;
    mutable bool m_cached = false;
    mutable QString m_value;
};
