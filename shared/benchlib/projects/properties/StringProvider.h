#pragma once

#include <QString>

/// Supplies texts by key, for property classes that are made with a name and a type only.
class StringProvider {
public:
    virtual ~StringProvider() = default;
    /// A null string for a key that it doesn't have.
    virtual QString string(const QString& key) const = 0;
};

/// The one in use; null until its owner sets it, and keyed texts are empty then.
extern StringProvider* stringProvider;
