#include "objfile/model/TOBFType.h"

#include "objfile/model/RecursionLimit.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFSymbol.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace {

/// Descriptive names are cut here; types that hold types twice over would have endless ones.
constexpr std::size_t LongestName = 4096;

HString* internName(std::string text)
{
    if (text.size() > LongestName)
        text = text.substr(0, LongestName) + "...";
    return HString::intern(text);
}

std::string nameOf(TOBFObject* object)
{
    const RecursionLimit depth;
    if (object == nullptr || depth.exceeded())
        return "?";
    HString* name = object->getName();
    return name != nullptr ? name->str() : std::string("?");
}

std::string typeNames(const std::list<TOBFSymbol*>& symbols)
{
    std::string result;
    for (TOBFSymbol* symbol : symbols) {
        if (!result.empty())
            result += ", ";
        result += nameOf(symbol->type());
        if (result.size() > LongestName)
            break;
    }
    return result;
}

/// Marks a type whose name is being made, so that a type which holds itself ends in "...".
class Naming {
public:
    explicit Naming(bool& flag) : m_flag(flag) { m_flag = true; }
    ~Naming() { m_flag = false; }
    Naming(const Naming&) = delete;
    Naming& operator=(const Naming&) = delete;

private:
    bool& m_flag;
};

} // namespace

void TOBFStaticField::markReachable(bool reachable)
{
    if (mark(reachable))
        m_location->markReachable(reachable);
}

HString* TOBFSimpleType::getName()
{
    if (m_name == nullptr)
        m_name =
            internName((m_tag == TAG_INT ? "INT(" : "UNSIGNED(") + std::to_string(m_size) + ")");
    return m_name;
}

HString* TOBFFloatType::getName()
{
    if (m_name == nullptr)
        m_name = internName("FLOAT(" + std::to_string(m_size) + ")");
    return m_name;
}

HString* TOBFUntypedType::getName() { return m_name != nullptr ? m_name : HString::intern("VOID"); }

HString* TOBFPtrType::getName() { return internName(nameOf(m_target) + "*"); }

TOBFArrayType::TOBFArrayType(TOBFType* element, int count)
    : TOBFType(TOBFKind::ArrayType, 0),
      m_element(element),
      m_count(count)
{
    const std::int64_t size = std::int64_t{element->size()} * count;
    m_size = static_cast<std::int32_t>(std::clamp<std::int64_t>(size, INT32_MIN, INT32_MAX));
}

HString* TOBFArrayType::getName()
{
    return internName(nameOf(m_element) + "[" + std::to_string(m_count) + "]");
}

HString* TOBFCountedArrayType::getName()
{
    return internName(nameOf(m_countType) + "::[" + nameOf(m_element) + "]");
}

HString* TOBFStrucType::getName()
{
    if (m_name != nullptr)
        return m_name;
    if (m_naming)
        return HString::intern("{ ... }");
    const Naming naming(m_naming);
    std::string text = "{ ";
    for (TOBFField* field : m_fields) {
        text += nameOf(field->type()) + " " + nameOf(field) + "; ";
        if (text.size() > LongestName)
            break;
    }
    return internName(text + " }");
}

TOBFField* TOBFStrucType::findField(HString* name)
{
    const auto it = std::find_if(m_fields.begin(), m_fields.end(),
                                 [=](TOBFField* field) { return field->name() == name; });
    return it != m_fields.end() ? *it : nullptr;
}

HString* TOBFFunctionType::getName()
{
    if (m_naming)
        return HString::intern("(...)");
    const Naming naming(m_naming);
    return internName("(" + typeNames(m_parameters) + ")->(" + typeNames(m_returns) + ")");
}

HString* TOBFMemberFunctionType::getName()
{
    return internName(nameOf(m_class) + "::" + (m_name != nullptr ? m_name->str() : "?"));
}
