#include "base/HException.h"
#include "projects/properties/PropertyValue.h"

#include <algorithm>
#include <utility>

PropertyValueList::~PropertyValueList()
{
    if (m_owning)
        for (const PropertyValue* value : m_values)
            delete value;
}

PropertyValueList::PropertyValueList(PropertyValueList&& other) noexcept
    : m_owning(other.m_owning),
      m_values(std::exchange(other.m_values, {}))
{
}

PropertyValueList& PropertyValueList::operator=(PropertyValueList&& other) noexcept
{
    std::swap(m_owning, other.m_owning);
    std::swap(m_values, other.m_values);
    return *this;
}

PropertyValue* PropertyValueList::find(const PropertyClass* propertyClass) const
{
    const auto found = std::ranges::find(m_values, propertyClass, &PropertyValue::propertyClass);
    return found == m_values.end() ? nullptr : *found;
}

void PropertyValueList::appendUnique(PropertyValue* value)
{
    if (value == nullptr)
        throw HException("Bad property value in PropertyValueList::appendUnique");
    PropertyValue* present = find(value->propertyClass());
    if (present == nullptr)
        m_values.push_back(value);
    else if (m_owning && present != value)
        delete value;
}

bool PropertyValueList::transient() const
{
    return !m_values.empty() && std::ranges::all_of(m_values, &PropertyValue::transient);
}
