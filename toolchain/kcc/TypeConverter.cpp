#include "toolchain/kcc/TypeConverter.h"

#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFModule.h"

#include <algorithm>

namespace {

constexpr int PointerSize = 2;

HString* nameOf(const DwarfEntry& entry)
{
    const std::string_view name = entry.text(Dwarf::AtName);
    return name.empty() ? nullptr : HString::intern(name);
}

int sizeOf(const DwarfEntry& entry) { return static_cast<int>(entry.number(Dwarf::AtByteSize)); }

TOBFSymbol* makeUnnamed(TOBFType* type)
{
    auto* symbol = new TOBFSymbol(HString::intern(std::string_view()));
    symbol->setType(type);
    return symbol;
}

/// A type like `base` under the name of a typedef; null where the base keeps its own name.
TOBFType* renamed(TOBFType* base, HString* name)
{
    TOBFType* result = nullptr;
    if (base->isSimple())
        result = new TOBFSimpleType(static_cast<TOBFSimpleType*>(base)->tag(), base->size());
    else if (base->isFloat())
        result = new TOBFFloatType(base->size());
    else if (base->isStruc() && base->name() == nullptr)
        result = base;
    if (result != nullptr)
        result->setName(name);
    return result;
}

} // namespace

TOBFType* TypeConverter::voidType()
{
    if (m_void == nullptr) {
        m_void = new TOBFUntypedType(0);
        m_void->setName(HString::intern("void"));
    }
    return m_void;
}

TOBFType* TypeConverter::typeOf(const DwarfEntry& entry)
{
    const unsigned index = m_unit.reference(entry, Dwarf::AtType);
    return index != 0 ? convert(index) : voidType();
}

TOBFType* TypeConverter::convert(unsigned index)
{
    const auto it = m_types.find(index);
    if (it != m_types.end())
        return it->second;
    TOBFType* made = make(index);
    m_types[index] = made;
    return made;
}

TOBFType* TypeConverter::make(unsigned index)
{
    const DwarfEntry& entry = m_unit.entry(index);
    switch (entry.tag) {
    case Dwarf::TagBaseType: return makeBase(entry);
    case Dwarf::TagEnumerationType: return makeEnumeration(index);
    case Dwarf::TagPointerType: return makePointer(index);
    case Dwarf::TagArrayType: return makeArray(entry);
    case Dwarf::TagStructureType:
    case Dwarf::TagUnionType: return makeStructure(index);
    case Dwarf::TagSubroutineType: return makeSubroutine(index);
    case Dwarf::TagTypedef: return makeTypedef(entry);
    default: return typeOf(entry); // const, volatile, restrict, _Atomic
    }
}

TOBFType* TypeConverter::makeBase(const DwarfEntry& entry)
{
    const int size = sizeOf(entry);
    TOBFType* type = nullptr;
    switch (entry.number(Dwarf::AtEncoding)) {
    case Dwarf::EncodingFloat: type = new TOBFFloatType(size); break;
    case Dwarf::EncodingSigned:
    case Dwarf::EncodingSignedChar: type = new TOBFSimpleType(TAG_INT, size); break;
    case Dwarf::EncodingUnsignedChar: type = new TOBFSimpleType(TAG_CHAR, size); break;
    default: type = new TOBFSimpleType(TAG_UNSIGNED, size); break;
    }
    type->setName(nameOf(entry));
    return type;
}

TOBFType* TypeConverter::makeEnumeration(unsigned index)
{
    const DwarfEntry& entry = m_unit.entry(index);
    TOBFType* type = new TOBFSimpleType(TAG_UNSIGNED, std::max(sizeOf(entry), 1));
    const std::string name(entry.text(Dwarf::AtName));
    type->setName(HString::intern(name.empty() ? "enum" : "enum " + name));
    for (const unsigned child : entry.children) {
        const DwarfEntry& enumerator = m_unit.entry(child);
        if (enumerator.tag != Dwarf::TagEnumerator || nameOf(enumerator) == nullptr)
            continue;
        auto* symbol = new TOBFSymbol(nameOf(enumerator));
        symbol->setType(type);
        symbol->setDefinition(
            new TOBFConstExpr(static_cast<std::int64_t>(enumerator.number(Dwarf::AtConstValue))));
        m_module->addSymbol(symbol);
        symbol->setScope(m_module);
    }
    return type;
}

/// Known before its target is converted, since a structure may hold a pointer to itself.
TOBFType* TypeConverter::makePointer(unsigned index)
{
    auto* type = new TOBFPtrType(PointerSize);
    m_types[index] = type;
    type->setTarget(typeOf(m_unit.entry(index)));
    return type;
}

TOBFType* TypeConverter::makeArray(const DwarfEntry& entry)
{
    TOBFType* type = typeOf(entry);
    for (auto it = entry.children.rbegin(); it != entry.children.rend(); ++it) {
        const DwarfEntry& range = m_unit.entry(*it);
        if (range.tag != Dwarf::TagSubrangeType)
            continue;
        std::uint64_t count = range.number(Dwarf::AtCount);
        if (const DwarfValue* bound = range.find(Dwarf::AtUpperBound))
            count = bound->number + 1;
        // A bound that a variable gives is a reference, not a number.
        const DwarfValue* value = range.find(Dwarf::AtCount);
        if (value != nullptr && value->form >= Dwarf::FormRef1
            && value->form <= Dwarf::FormRefUData)
            count = 0;
        type = new TOBFArrayType(type, static_cast<int>(count));
    }
    return type;
}

TOBFType* TypeConverter::makeStructure(unsigned index)
{
    const DwarfEntry& entry = m_unit.entry(index);
    auto* type = new TOBFStrucType(sizeOf(entry));
    type->setName(nameOf(entry));
    m_types[index] = type;
    for (const unsigned child : entry.children)
        if (m_unit.entry(child).tag == Dwarf::TagMember)
            addMember(type, m_unit.entry(child));
    return type;
}

void TypeConverter::addMember(TOBFStrucType* structure, const DwarfEntry& member)
{
    TOBFType* type = typeOf(member);
    std::uint64_t offset = member.number(Dwarf::AtDataMemberLocation) * 8;
    if (const DwarfValue* bits = member.find(Dwarf::AtDataBitOffset))
        offset = bits->number;
    const std::uint64_t size =
        member.number(Dwarf::AtBitSize, static_cast<std::uint64_t>(type->size()) * 8);
    HString* name = nameOf(member);
    structure->addField(new TOBFDynamicField(name != nullptr ? name : HString::intern(""),
                                             static_cast<int>(offset), static_cast<int>(size),
                                             type));
}

TOBFType* TypeConverter::makeTypedef(const DwarfEntry& entry)
{
    TOBFType* base = typeOf(entry);
    TOBFType* type = renamed(base, nameOf(entry));
    return type != nullptr ? type : base;
}

TOBFFunctionType* TypeConverter::makeFunction(const DwarfEntry& entry)
{
    auto* type = new TOBFFunctionType(0, 0, 0);
    if (entry.has(Dwarf::AtType))
        type->addReturn(makeUnnamed(typeOf(entry)));
    return type;
}

TOBFType* TypeConverter::makeSubroutine(unsigned index)
{
    const DwarfEntry& entry = m_unit.entry(index);
    TOBFFunctionType* type = makeFunction(entry);
    m_types[index] = type;
    for (const unsigned child : entry.children)
        if (m_unit.entry(child).tag == Dwarf::TagFormalParameter)
            type->addParameter(makeUnnamed(typeOf(m_unit.entry(child))));
    return type;
}
