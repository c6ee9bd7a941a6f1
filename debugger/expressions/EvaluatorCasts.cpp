// How the evaluator makes types of those written in casts.

#include "debugger/expressions/BaseType.h"
#include "debugger/expressions/ParserException.h"
#include "debugger/expressions/TOBFExpressionEvaluator.h"

#include "objfile/model/TOBFType.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace {

constexpr int WordBytes = 2;
constexpr int LargestMember = 1 << 20;

/// Places the members of a structure as the compiler does: each at a multiple of its size, but no
/// more than a word, and bit-fields in units of their type.
class StructLayout {
public:
    void add(HString* name, TOBFType* type, int bits)
    {
        const int size = std::clamp(type->size(), 0, LargestMember);
        const int alignment = std::clamp(size, 1, WordBytes);
        const int unit = size * 8;
        const int width = bits > 0 ? std::min(bits, unit) : unit;
        m_alignment = std::max(m_alignment, alignment);
        if (bits == 0 || unit == 0 || m_next % unit + width > unit)
            m_next = aligned(m_next, alignment * 8);
        m_fields.push_back(new TOBFDynamicField(name, m_next, width, type));
        m_next += width;
        if (m_next > LargestMember * 8)
            throw ParserException("struct parse error");
    }
    TOBFType* finish() const
    {
        auto* type = new TOBFStrucType(aligned(m_next, m_alignment * 8) / 8);
        for (TOBFField* field : m_fields)
            type->addField(field);
        return type;
    }

private:
    static int aligned(int bits, int to) { return (bits + to - 1) / to * to; }

    int m_next = 0;
    int m_alignment = 1;
    std::vector<TOBFField*> m_fields;
};

HString* fieldName(const std::string& name)
{
    return name.empty() ? nullptr : HString::intern(name);
}

TOBFType* makeRegister(const EvaluatorTypes& types, const RegisterType* written)
{
    TOBFType* unit = types.unsignedOfSize(static_cast<unsigned>(written->size()));
    if (unit == nullptr)
        unit = types.defaultType();
    auto* type = new TOBFStrucType(written->size());
    for (const RegisterType::Field& it : written->fields())
        type->addField(new TOBFDynamicField(fieldName(it.name), it.bitOffset, it.bits, unit));
    return type;
}

} // namespace

TOBFType* TOBFExpressionEvaluator::getType(const BaseType* type)
{
    if (const auto* simple = dynamic_cast<const SimpleType*>(type))
        return m_types.simple(simple->code(), simple->isUnsigned());
    if (const auto* user = dynamic_cast<const UserType*>(type)) {
        TOBFType* found = getNamedType(user->name().c_str());
        if (found == nullptr)
            throw ParserException("cannot cast");
        return found;
    }
    if (const auto* pointer = dynamic_cast<const PointerType*>(type))
        return m_types.pointerTo(getType(pointer->target()));
    if (const auto* array = dynamic_cast<const ArrayType*>(type)) {
        TOBFType* element = getType(array->element());
        const ExpressionType size = array->size().evaluate().resolved();
        if (!size.isNumberType() || size.getInteger() < 0
            || size.getInteger() > std::numeric_limits<int>::max())
            throw ParserException("bad index type");
        return m_types.arrayOf(element, static_cast<int>(size.getInteger()));
    }
    if (const auto* bits = dynamic_cast<const RegisterType*>(type))
        return m_types.made(type->dump(), [&] { return makeRegister(m_types, bits); });
    const auto* structure = dynamic_cast<const StructType*>(type);
    std::vector<TOBFType*> members;
    for (const StructType::Field& it : structure->fields())
        members.push_back(getType(it.type.get()));
    // The text tells the members' types apart only while the program's own keep their meaning.
    QString key = type->dump();
    for (const TOBFType* it : members)
        key += u' ' + QString::number(reinterpret_cast<quintptr>(it), 16) + u':'
            + QString::number(it->size());
    return m_types.made(key, [&] {
        StructLayout layout;
        for (std::size_t i = 0; i < members.size(); ++i)
            layout.add(fieldName(structure->fields()[i].name), members[i],
                       structure->fields()[i].bits);
        return layout.finish();
    });
}

/// The value as a constant of the type: the bits of an integer, or what goes with a conversion from
/// or to floating.
quint64 TOBFExpressionEvaluator::constantFor(TOBFType* type, const ExpressionType& value) const
{
    if (type->isFloat() && type->size() == 4)
        return std::bit_cast<quint32>(static_cast<float>(value.getFloating()));
    if (type->isFloat())
        return std::bit_cast<quint64>(value.getFloating());
    if (value.getType() == ExpressionType::SignedInteger
        || value.getType() == ExpressionType::Floating)
        return static_cast<quint64>(value.getInteger());
    return value.getUInteger();
}

ExpressionType TOBFExpressionEvaluator::cast(const BaseType* written, const ExpressionType& value)
{
    TOBFType* type = getType(written);
    const auto* marker = static_cast<MyMarker*>(value.getMarker());
    if (marker != nullptr && !marker->isBitField())
        return moved(marker, type, 0);
    const ExpressionType plain = value.resolved();
    if (!plain.isNumberType() && plain.getType() != ExpressionType::Boolean)
        throw ParserException("cannot cast");
    const quint64 constant = constantFor(type, plain);
    if (dynamic_cast<const PointerType*>(written) != nullptr)
        type = m_types.pointerTo(type->getElementType(), constant);
    const auto kind = type->isArray() ? DebugMarkerType::Data : DebugMarkerType::Constant;
    return mkExpressionType(type, constant, kind);
}
