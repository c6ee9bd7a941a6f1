#pragma once

#include "script/es/ESClass.h"

/// What arrays do: their elements and their length are kept in step.
class ESArrayClass : public ESClass {
public:
    ESArrayClass();

    void put(ESContext* context, ESObject* object, ESString* name, const ESValue& value) override;

    /// Puts an element behind those in the vector, and the length with it; false if the index isn't
    /// the next one.
    static bool append(ESContext* context, ESObject* array, int index, const ESValue& value);
    static double length(ESObject* array);
    static void setLength(ESObject* array, double length);
};
