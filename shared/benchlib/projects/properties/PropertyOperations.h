#pragma once

#include <QStringList>

class PropertyValue;

/// What a user can do with a value from its context menu. Offers nothing by itself.
class PropertyOperations {
public:
    virtual ~PropertyOperations() = default;
    /// The names of the operations that the value offers now, with "&" before a letter's key.
    virtual QStringList operations(const PropertyValue*) const { return {}; }
    virtual void doOperation(PropertyValue*, const QString&) { }
};
