#include "script/es/ESClass.h"

#include "script/es/ESContext.h"

ESValue ESClass::get(ESContext*, ESObject* object, ESString* name)
{
    for (ESObject* at = object; at; at = at->prototype) {
        if (name->element >= 0)
            if (const ESValue* element = at->element(name->element))
                return *element;
        if (const ESProperty* property = at->find(name))
            return property->value;
    }
    return {};
}

void ESClass::put(ESContext* context, ESObject* object, ESString* name, const ESValue& value)
{
    if (ESProperty* property = object->find(name)) {
        if (!(property->flags & ESProperty::ReadOnly))
            property->value = value;
        return;
    }
    context->memory().charge(sizeof(ESProperty));
    object->append(name, 0, value);
}
