#pragma once

#include "projects/properties/PropertyOperations.h"

#include <functional>

/// The operations of the settings of a project: going back to what is inherited, and opening the
/// file that a setting names.
class ProjectPropertyOperations : public PropertyOperations {
public:
    using Open = std::function<void(const QString& absolutePath)>;
    explicit ProjectPropertyOperations(Open open) : m_open(std::move(open)) { }

    QStringList operations(const PropertyValue* value) const override;
    void doOperation(PropertyValue* value, const QString& name) override;

private:
    Open m_open;
};
