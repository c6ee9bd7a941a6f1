#pragma once

#include "debugger/expressions/ExpressionType.h"

#include <QString>

struct ExpressionContext;
class MarkerType;

/// Takes what the debugger finds when it walks values, and decides how pointers, arrays and
/// structures are shown. Names are those shown, expressions give the same value when they are
/// evaluated. Types are texts.
class VariableListBuilder {
public:
    /// How a pointer is shown; of an array the last two, and Value for its address alone; a
    /// structure is open unless it is Value. An array of anything but characters can't be shown as
    /// a string, and has its elements shown.
    enum pointerEvalMode { Value = 0, Dereference = 1, AsArray = 2, AsString = 3 };

    virtual ~VariableListBuilder() = default;

    virtual void setExpressionContext(const ExpressionContext&) { }
    /// `size` is that of what it points to, in bytes, 0 if that isn't known. `count` is how many
    /// elements are wanted of a pointer shown as an array.
    virtual pointerEvalMode getPointerEvalMode(const QString& /*name*/,
                                               const QString& /*expression*/, unsigned /*size*/,
                                               unsigned& /*count*/)
    {
        return Value;
    }
    /// `count` comes as the array's number of elements and leaves as that of the elements wanted.
    virtual pointerEvalMode getArrayEvalMode(const QString& /*name*/, const QString& /*expression*/,
                                             unsigned& /*count*/)
    {
        return AsArray;
    }
    virtual pointerEvalMode getStructEvalMode(const QString& /*name*/,
                                              const QString& /*expression*/)
    {
        return Dereference;
    }
    virtual void addPrimitive(const QString& name, const QString& expression,
                              const ExpressionType& value, const QString& type,
                              MarkerType* marker) = 0;
    /// The value is a text with the object's address and size, or that of the pointer which is
    /// followed. What follows up to endObject are its fields, or what the pointer points to.
    virtual void* beginObject(const QString& name, const QString& expression,
                              const ExpressionType& value, const QString& type, MarkerType* marker,
                              unsigned size) = 0;
    virtual void endObject(void* handle) = 0;
    virtual void* beginArray(const QString& name, const QString& expression,
                             const ExpressionType& value, const QString& type, MarkerType* marker,
                             unsigned size) = 0;
    virtual void endArray(void* handle) = 0;
    virtual void clear() { }
};
