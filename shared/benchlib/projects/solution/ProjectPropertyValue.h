#pragma once

#include "projects/properties/PropertyValue.h"
#include "projects/solution/ProjectElement.h"

/// A setting stored at an element of the project tree, under one configuration.
class ProjectPropertyValue : public PropertyValue {
public:
    /// A class that isn't per configuration is stored and read in "Common".
    ProjectPropertyValue(const PropertyClass* propertyClass, ProjectElement* node,
                         const QString& configuration);

    ProjectElement* node() const { return m_node; }
    const QString& configuration() const { return m_configuration; }

    /// Of a list, the part that is stored here; of the others, what a look-up from here finds.
    QString propertyValue() const override;
    void setPropertyValue(const QString& text) override;
    /// True unless the attribute stands here.
    bool inherited() const override;
    /// True if a look-up meets an element that stores the property.
    bool nonDefault() const;
    PropertyInheritanceInformation inheritanceInformation() const;

private:
    ProjectElement* m_node;
    QString m_configuration;
};
