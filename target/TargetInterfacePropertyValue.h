#pragma once

#include "projects/properties/PropertyValue.h"

/// A property of a target. Empty text stands for the class's default.
class TargetInterfacePropertyValue : public PropertyValue {
public:
    using PropertyValue::PropertyValue;
    void setPropertyValue(const QString& text) override { m_value = text; }
    QString propertyValue() const override { return m_value; }

private:
    QString m_value;
};
