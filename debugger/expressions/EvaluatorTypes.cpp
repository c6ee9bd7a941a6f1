#include "debugger/expressions/EvaluatorTypes.h"

#include "debugger/expressions/BaseType.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/model/TOBFType.h"

#include <iterator>

namespace {

struct SimpleEntry {
    const char* name;
    int size;
    TOBFTag tag; ///< TAG_FLOAT for a floating type
};

/// A signed and an unsigned type for each code of a SimpleType.
constexpr SimpleEntry simpleTypes[] = {
    {"signed char", 1, TAG_INT}, {"unsigned char", 1, TAG_UNSIGNED},
    {"short", 2, TAG_INT},       {"unsigned short", 2, TAG_UNSIGNED},
    {"int", 2, TAG_INT},         {"unsigned int", 2, TAG_UNSIGNED},
    {"long", 4, TAG_INT},        {"unsigned long", 4, TAG_UNSIGNED},
    {"long long", 8, TAG_INT},   {"unsigned long long", 8, TAG_UNSIGNED},
    {"float", 4, TAG_FLOAT},     {"float", 4, TAG_FLOAT},
    {"double", 8, TAG_FLOAT},    {"double", 8, TAG_FLOAT},
};
constexpr int AddressBytes = 3;

TOBFType* make(const SimpleEntry& entry)
{
    TOBFType* type = entry.tag == TAG_FLOAT ? static_cast<TOBFType*>(new TOBFFloatType(entry.size))
                                            : new TOBFSimpleType(entry.tag, entry.size);
    type->setName(HString::intern(std::string(entry.name)));
    return type;
}

} // namespace

EvaluatorTypes::EvaluatorTypes()
{
    static_assert(std::size(simpleTypes) == std::extent_v<decltype(m_simple)>);
    const CurrentPool current(&m_pool);
    for (std::size_t i = 0; i < std::size(simpleTypes); ++i)
        m_simple[i] = make(simpleTypes[i]);
    m_address = make({"address", AddressBytes, TAG_UNSIGNED});
}

TOBFType* EvaluatorTypes::simple(int code, bool isUnsigned) const
{
    return m_simple[code * 2 + isUnsigned];
}

TOBFType* EvaluatorTypes::unsignedOfSize(unsigned size) const
{
    switch (size) {
    case 1: return simple(SimpleType::Char, true);
    case 2: return simple(SimpleType::Short, true);
    case AddressBytes: return m_address;
    case 4: return simple(SimpleType::Long, true);
    case 8: return simple(SimpleType::LongLong, true);
    default: return nullptr;
    }
}

TOBFType* EvaluatorTypes::pointerTo(TOBFType* target, quint64 address)
{
    constexpr int Small = TOBFModule::processorAddressSize();
    const bool isFar = address >> Small * 8 != 0 && address <= TOBFModule::processorAddress(~0U);
    const int size = isFar ? 2 * Small : Small;
    TOBFType*& type = m_pointers[{target, size}];
    if (type == nullptr) {
        const CurrentPool current(&m_pool);
        auto* pointer = new TOBFPtrType(size);
        pointer->setTarget(target);
        type = pointer;
    }
    return type;
}

TOBFType* EvaluatorTypes::arrayOf(TOBFType* element, int count)
{
    TOBFType*& type = m_arrays[{element, element->size(), count}];
    if (type == nullptr) {
        const CurrentPool current(&m_pool);
        type = new TOBFArrayType(element, count);
    }
    return type;
}

TOBFType* EvaluatorTypes::made(const QString& text, const std::function<TOBFType*()>& make)
{
    const auto it = m_made.find(text);
    if (it != m_made.end())
        return it->second;
    const CurrentPool current(&m_pool);
    return m_made[text] = make();
}
