#include "script/es/ESArrayClass.h"

#include "script/es/ESContext.h"

using namespace Qt::Literals::StringLiterals;

namespace {

ESString* lengthName()
{
    static ESString* const name = ESStringPool::intern(u"length"_s);
    return name;
}

ESProperty& lengthProperty(ESObject* array)
{
    // A new array has its length as its first property.
    if (!array->properties.empty() && array->properties[0].name == lengthName())
        return array->properties[0];
    if (ESProperty* property = array->find(lengthName()))
        return *property;
    return array->append(lengthName(), ESProperty::DontEnum | ESProperty::DontDelete, 0.0);
}

} // namespace

ESArrayClass::ESArrayClass() : ESClass(u"Array"_s) { }

double ESArrayClass::length(ESObject* array) { return lengthProperty(array).value.number; }

bool ESArrayClass::append(ESContext* context, ESObject* array, int index, const ESValue& value)
{
    if (static_cast<std::size_t>(index) != array->elements.size())
        return false;
    if (array->elements.size() == array->elements.capacity())
        context->memory().charge(qsizetype(array->elements.size() * sizeof(ESValue)));
    array->elements.push_back(value);
    // One that stood apart from the others has come to lie behind them.
    if (array->properties.size() > 1)
        if (ESProperty* apart = array->find(ESStringPool::number(index)))
            array->erase(apart);
    double& length = lengthProperty(array).value.number;
    if (length <= index)
        length = index + 1.0;
    return true;
}

void ESArrayClass::setLength(ESObject* array, double length)
{
    if (length < double(array->elements.size()))
        array->elements.resize(static_cast<std::size_t>(length));
    for (ESProperty& property : array->properties)
        if (property.name && property.name->element >= 0 && property.name->element >= length)
            array->erase(&property);
    lengthProperty(array).value = ESValue(length);
}

void ESArrayClass::put(ESContext* context, ESObject* object, ESString* name, const ESValue& value)
{
    if (name == lengthName()) {
        setLength(object, ESContext::toUint32(context->toNumber(value)));
        return;
    }
    if (name->element >= 0) {
        const auto index = static_cast<std::size_t>(name->element);
        if (index < object->elements.size()) {
            object->elements[index] = value;
            return;
        }
        if (append(context, object, name->element, value))
            return;
        double& length = lengthProperty(object).value.number;
        if (length <= name->element)
            length = name->element + 1.0;
    }
    ESClass::put(context, object, name, value);
}
