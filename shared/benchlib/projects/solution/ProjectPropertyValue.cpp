#include "projects/solution/ProjectPropertyValue.h"

#include "projects/solution/ProjectSystem.h"

ProjectPropertyValue::ProjectPropertyValue(const PropertyClass* propertyClass, ProjectElement* node,
                                           const QString& configuration)
    : PropertyValue(propertyClass),
      m_node(node),
      m_configuration(propertyClass->perConfiguration() ? configuration : CommonConfiguration)
{
}

QString ProjectPropertyValue::propertyValue() const
{
    if (propertyClass()->type() == PropertyClass::Type::StringList)
        return projectSystem->specificSettingFor(m_node, propertyClass(), m_configuration);
    return projectSystem->settingFor(m_node, propertyClass(), m_configuration);
}

void ProjectPropertyValue::setPropertyValue(const QString& text)
{
    projectSystem->setProperty(m_node, propertyClass(), m_configuration, text, false);
}

bool ProjectPropertyValue::inherited() const
{
    const ProjectElement* configuration = m_node->configuration(m_configuration);
    return !configuration || !configuration->hasAttribute(propertyClass()->saveName());
}

bool ProjectPropertyValue::nonDefault() const
{
    const PropertyInheritanceInformation items = inheritanceInformation();
    return items.size() > 1 || (items.size() == 1 && items.first().element);
}

PropertyInheritanceInformation ProjectPropertyValue::inheritanceInformation() const
{
    PropertyInheritanceInformation items;
    projectSystem->settingFor(m_node, propertyClass(), m_configuration, &items);
    return items;
}
