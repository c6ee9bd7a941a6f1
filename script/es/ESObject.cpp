#include "script/es/ESObject.h"

ESProperty* ESObject::find(const ESString* name)
{
    if (m_index) {
        const auto found = m_index->constFind(name);
        return found == m_index->constEnd() ? nullptr
                                            : &properties[static_cast<std::size_t>(*found)];
    }
    for (ESProperty& property : properties)
        if (property.name == name)
            return &property;
    return nullptr;
}

ESProperty& ESObject::append(ESString* name, std::uint32_t flags, const ESValue& value)
{
    properties.push_back({name, flags, value});
    if (m_index) {
        m_index->insert(name, static_cast<int>(properties.size()) - 1);
    } else if (properties.size() > IndexFrom) {
        m_index = std::make_unique<Index>();
        // The first of a name is the one that is found.
        for (std::size_t i = properties.size(); i-- > 0;)
            if (properties[i].name)
                m_index->insert(properties[i].name, static_cast<int>(i));
    }
    return properties.back();
}

void ESObject::erase(ESProperty* property)
{
    if (m_index)
        m_index->remove(property->name);
    property->name = nullptr;
    property->value = {};
}

void ESObject::clear()
{
    prototype = nullptr;
    primitive = {};
    callClosure = constructClosure = nullptr;
    objectClass = nullptr;
    properties.clear();
    elements.clear();
    hasElements = captured = false;
    nativeIndex = -1;
    m_index.reset();
}
