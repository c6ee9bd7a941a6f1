#include "script/objects/JavaScriptVariableView.h"

JavaScriptVariableView::JavaScriptVariableView(ESContext* context) : m_context(context)
{
    m_open.push_back({context->newObject()});
}

ESValue JavaScriptVariableView::toScript(ESContext* context, const ExpressionType& value)
{
    switch (value.getType()) {
    case ExpressionType::Boolean: return ESValue::boolean(value.getBoolean());
    case ExpressionType::SignedInteger: return double(value.getInteger());
    case ExpressionType::UnsignedInteger: return double(value.getUInteger());
    case ExpressionType::Floating: return value.getFloating();
    case ExpressionType::String: return context->text(value.getString());
    default: return {};
    }
}

void JavaScriptVariableView::add(const QString& name, const ESValue& value)
{
    Open& into = m_open.back();
    ESString* const key =
        into.elements >= 0 ? ESStringPool::number(into.elements++) : ESStringPool::intern(name);
    into.object->objectClass->put(m_context, into.object, key, value);
    if (m_open.size() == 1)
        m_last = value;
}

void JavaScriptVariableView::addPrimitive(const QString& name, const QString&,
                                          const ExpressionType& value, const QString&, MarkerType*)
{
    add(name, toScript(m_context, value));
}

void* JavaScriptVariableView::beginObject(const QString& name, const QString&,
                                          const ExpressionType&, const QString&, MarkerType*,
                                          unsigned)
{
    ESObject* const object = m_context->newObject();
    add(name, object);
    m_open.push_back({object});
    return object;
}

void* JavaScriptVariableView::beginArray(const QString& name, const QString&, const ExpressionType&,
                                         const QString&, MarkerType*, unsigned)
{
    ESObject* const array = m_context->newArray(0, nullptr);
    add(name, array);
    m_open.push_back({array, 0});
    return array;
}

void JavaScriptVariableView::endObject(void*) { m_open.pop_back(); }
