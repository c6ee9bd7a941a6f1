// The functions of Array.

#include "script/es/ESArrayClass.h"
#include "script/es/ESNatives.h"

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

std::vector<ESValue> elementsOf(const ESCall& call, ESObject* array)
{
    return call.context.elementsOf(array);
}

void setLength(const ESCall& call, double length)
{
    static ESString* const name = ESStringPool::intern(u"length"_s);
    call.thisObject->objectClass->put(&call.context, call.thisObject, name, length);
}

void replaceElements(const ESCall& call, const std::vector<ESValue>& elements)
{
    for (std::size_t i = 0; i < elements.size(); ++i)
        call.context.putElement(call.thisObject, double(i), elements[i]);
    setLength(call, double(elements.size()));
}

ESValue newArray(const ESCall& call, const std::vector<ESValue>& elements)
{
    return call.context.newArray(int(elements.size()), elements.data());
}

ESValue array(const ESCall& call)
{
    if (call.argc != 1 || !call.argument(0).isNumber())
        return call.context.newArray(call.argc, call.argv);
    const double length = call.number(0);
    if (length != ESContext::toUint32(length))
        call.context.throwException(ESContext::ErrorKind::RangeError,
                                    u"bad length in array constructor"_s);
    ESObject* made = call.context.newArray(0, nullptr);
    ESArrayClass::setLength(made, length);
    return made;
}

ESValue toString(const ESCall& call)
{
    if (!call.thisObject->hasElements)
        call.context.throwTypeError(u"Array.prototype.toString requires an array"_s);
    QString text;
    const double length = call.context.lengthOf(call.thisObject);
    for (double i = 0; i < length; ++i) {
        const ESValue element = call.context.getElement(call.thisObject, i);
        if (i > 0)
            text += u',';
        if (!element.is(ESValue::Null))
            text += call.context.toString(element);
    }
    return call.string(text);
}

ESValue concat(const ESCall& call)
{
    std::vector<ESValue> elements = elementsOf(call, call.thisObject);
    for (int i = 0; i < call.argc; ++i) {
        const ESValue value = call.argument(i);
        if (value.isObject() && value.object->hasElements) {
            const std::vector<ESValue> more = elementsOf(call, value.object);
            elements.insert(elements.end(), more.begin(), more.end());
        } else {
            elements.push_back(value);
        }
    }
    return newArray(call, elements);
}

ESValue pop(const ESCall& call)
{
    const double length = call.context.lengthOf(call.thisObject);
    if (length == 0)
        return {};
    const ESValue last = call.context.getElement(call.thisObject, length - 1);
    setLength(call, length - 1);
    return last;
}

ESValue push(const ESCall& call)
{
    double length = call.context.lengthOf(call.thisObject);
    for (int i = 0; i < call.argc; ++i)
        call.context.putElement(call.thisObject, length++, call.argument(i));
    return length;
}

ESValue reverse(const ESCall& call)
{
    std::vector<ESValue> elements = elementsOf(call, call.thisObject);
    std::reverse(elements.begin(), elements.end());
    replaceElements(call, elements);
    return call.thisObject;
}

ESValue shift(const ESCall& call)
{
    const double length = call.context.lengthOf(call.thisObject);
    if (length == 0)
        return {};
    const ESValue first = call.context.getElement(call.thisObject, 0.0);
    std::vector<ESValue>& dense = call.thisObject->elements;
    if (double(dense.size()) == length) {
        dense.erase(dense.begin());
        setLength(call, length - 1);
    } else {
        std::vector<ESValue> elements = elementsOf(call, call.thisObject);
        elements.erase(elements.begin());
        replaceElements(call, elements);
    }
    return first;
}

/// A position from the start, or from the end when it is negative.
double position(double value, double length)
{
    return value < 0 ? std::max(length + value, 0.0) : std::min(value, length);
}

ESValue slice(const ESCall& call)
{
    const std::vector<ESValue> elements = elementsOf(call, call.thisObject);
    const auto length = double(elements.size());
    const double from = position(call.integer(0, 0), length);
    const double to = std::max(from, position(call.integer(1, length), length));
    return newArray(
        call, {elements.begin() + std::ptrdiff_t(from), elements.begin() + std::ptrdiff_t(to)});
}

ESValue sort(const ESCall& call)
{
    const ESValue compare = call.argument(0);
    if (!compare.is(ESValue::Undefined) && !(compare.isObject() && compare.object->isCallable()))
        call.context.throwTypeError(u"Array.prototype.sort argument is not a function"_s);
    std::vector<ESValue> elements = elementsOf(call, call.thisObject);
    // A merge sort: it ends whatever the function answers.
    const auto before = [&](const ESValue& a, const ESValue& b) {
        if (a.is(ESValue::Undefined) || b.is(ESValue::Undefined))
            return !a.is(ESValue::Undefined);
        if (compare.is(ESValue::Undefined))
            return call.context.toString(a) <= call.context.toString(b);
        const ESValue pair[] = {a, b};
        const double order = call.context.toNumber(
            call.context.call(compare.object, call.context.global(), 2, pair));
        return !(order > 0);
    };
    std::vector<ESValue> merged(elements.size());
    for (std::size_t width = 1; width < elements.size(); width *= 2) {
        for (std::size_t start = 0; start < elements.size(); start += 2 * width) {
            std::size_t left = start;
            const std::size_t middle = std::min(start + width, elements.size());
            std::size_t right = middle;
            const std::size_t end = std::min(start + 2 * width, elements.size());
            for (std::size_t to = start; to < end; ++to) {
                const bool takeLeft =
                    left < middle && (right == end || before(elements[left], elements[right]));
                merged[to] = elements[takeLeft ? left++ : right++];
            }
        }
        elements.swap(merged);
    }
    replaceElements(call, elements);
    return call.thisObject;
}

constexpr ESNative ArrayFunctions[] = {
    {"Array", 0, array},     {"toString", 0, toString}, {"toLocaleString", 0, toString},
    {"concat", 0, concat},   {"pop", 0, pop},           {"push", 0, push},
    {"reverse", 0, reverse}, {"shift", 0, shift},       {"slice", 2, slice},
    {"sort", 1, sort}};

} // namespace

std::unique_ptr<ESNativeClass> makeArrayFunctions()
{
    return std::make_unique<ESNativeClass>("Array", ArrayFunctions);
}
