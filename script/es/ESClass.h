#pragma once

#include "script/es/ESObject.h"

#include <QString>

class ESContext;

/// What objects of a kind do. The base is that of objects that scripts make.
class ESClass {
public:
    explicit ESClass(const QString& name) : m_name(name) { }
    virtual ~ESClass() = default;
    ESClass(const ESClass&) = delete;
    ESClass& operator=(const ESClass&) = delete;

    const QString& className() const { return m_name; }

    /// Of the object or its prototypes; undefined if none has it.
    virtual ESValue get(ESContext* context, ESObject* object, ESString* name);
    /// An own entry is overwritten unless it is ReadOnly; a new one is appended.
    virtual void put(ESContext* context, ESObject* object, ESString* name, const ESValue& value);
    virtual bool canPut(ESContext*, ESObject*, ESString*) { return false; }
    virtual bool hasProperty(ESContext*, ESObject*, ESString*) { return false; }
    virtual bool deleteProperty(ESContext*, ESObject*, ESString*) { return false; }
    enum Hint { NumberFirst = 3, StringFirst = 4, NoPreference = 6 };
    /// The primitive value of an object by the hint; undefined by the base.
    virtual void defaultValue(ESContext*, ESObject*, int, ESValue* value) { *value = {}; }
    /// A native function: its result goes to argv[0].
    virtual void call(ESContext*, ESObject*, ESObject*, int, ESValue*) { }
    virtual ESObject* construct(ESContext*, ESObject*, int, ESValue*) { return nullptr; }

private:
    QString m_name;
};
