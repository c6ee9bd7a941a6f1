#include "debugger/expressions/TOBFExpressionEvaluator.h"

#include "debugger/expressions/CStyleLexer.h"
#include "debugger/expressions/ParserException.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/model/TOBFSymbol.h"
#include "objfile/model/TOBFType.h"

#include <algorithm>

namespace {

using Kind = DebugMarkerType::LocationKind;

constexpr int MemorySpaceCode = TAG_MEMSPACE_FIRST + 1;
constexpr int MemorySpaceEeprom = TAG_MEMSPACE_FIRST + 2;

unsigned sizeOf(const TOBFType* type) { return static_cast<unsigned>(std::max(type->size(), 0)); }

Kind kindOf(int memorySpace)
{
    switch (memorySpace) {
    case TAG_MEMSPACE_FIRST: return DebugMarkerType::Data;
    case MemorySpaceCode: return DebugMarkerType::Code;
    case MemorySpaceEeprom: return DebugMarkerType::Eeprom;
    default: return DebugMarkerType::Peripheral;
    }
}

/// A type without its qualifiers; the innermost of them gives the kind of memory.
TOBFType* unqualified(TOBFType* type, Kind& kind)
{
    while (type != nullptr && type->isQualified()) {
        kind = kindOf(static_cast<TOBFQualifiedType*>(type)->tag());
        type = type->getElementType();
    }
    return type;
}

TOBFType* unqualified(TOBFType* type)
{
    Kind ignored = DebugMarkerType::Data;
    return unqualified(type, ignored);
}

MyMarker* located(MarkerType* marker)
{
    auto* it = dynamic_cast<MyMarker*>(marker);
    if (it == nullptr)
        throw ParserException("bad expression type");
    return it;
}

} // namespace

ExpressionType MyMarker::getValue() { return m_evaluator->getValue(this); }

void MyMarker::setValue(QString value)
{
    m_evaluator->assign(this, m_evaluator->parseAndEvaluate(value.toUtf8().constData()).resolved());
}

QString MyMarker::registerNumberToName(unsigned number)
{
    return m_evaluator->registerNumberToName(number);
}

bool MyMarker::registerNumberLT(unsigned a, unsigned b) const
{
    return m_evaluator->registerNumberLT(a, b);
}

TOBFExpressionEvaluator::TOBFExpressionEvaluator() : DebugExpressionParser(new CStyleLexer) { }

ExpressionType TOBFExpressionEvaluator::mkExpressionType(TOBFType* type, quint64 base, Kind kind,
                                                         unsigned offset, unsigned size,
                                                         int bitOffset, int bitSize)
{
    if (type == nullptr)
        type = m_types.defaultType();
    auto* marker = new MyMarker(this, type);
    marker->m_kind = kind;
    marker->m_littleEndian = !TOBFModule::processorBigEndian();
    marker->m_registerLength = kind == DebugMarkerType::Register
        ? getRegisterLength(static_cast<unsigned>(base))
        : static_cast<unsigned>(TOBFModule::processorAddressSize());
    marker->m_base = static_cast<unsigned>(base);
    marker->m_upperBase = static_cast<unsigned>(base >> 32);
    marker->m_offset = offset;
    marker->m_size = size != 0 ? size : sizeOf(type);
    marker->m_bitOffset = bitOffset;
    marker->m_bitSize = bitSize;
    return ExpressionType(marker);
}

ExpressionType TOBFExpressionEvaluator::getScopedIdentifier(const QStringList&)
{
    throw ParserException(":: not supported");
}

ExpressionType TOBFExpressionEvaluator::getIdentifier(const char* name)
{
    TOBFSymbol* symbol = getSymbol(name);
    if (symbol == nullptr || symbol->definition() == nullptr)
        throw ParserException(QString::fromUtf8(name) + QStringLiteral(" symbol not found"));
    ExpressionType result;
    if (!getExpressionType(symbol->type(), symbol->definition(), result, false))
        throw ParserException("invalid address");
    m_lastSymbol = symbol;
    return result;
}

bool TOBFExpressionEvaluator::isStackPointer(int number)
{
    return number == registerNameToNumber(QStringLiteral("SP"));
}

bool TOBFExpressionEvaluator::getExpressionType(TOBFType* type, TOBFExpr* expr,
                                                ExpressionType& result, bool forLocation)
{
    if (expr->kind() == TOBFKind::RegisterExpr) {
        const int number = static_cast<TOBFRegisterExpr*>(expr)->number();
        result = mkExpressionType(unqualified(type), static_cast<unsigned>(number),
                                  DebugMarkerType::Register);
        return true;
    }
    const auto* binary =
        expr->kind() == TOBFKind::BinaryExpr ? static_cast<TOBFBinaryExpr*>(expr) : nullptr;
    if (binary != nullptr && binary->operation() == TAG_BASE_OFFSET) {
        if (binary->left()->kind() != TOBFKind::RegisterExpr || binary->right() == nullptr)
            return false;
        const int number = static_cast<TOBFRegisterExpr*>(binary->left())->number();
        const TOBFValue offset = binary->right()->evaluate();
        if (offset.failed)
            return false;
        // Places count from the stack pointer at the function's entry; other registers stand still.
        const int adjustment = isStackPointer(number) ? getSPAdjustment() : 0;
        const unsigned base = getSPValue(static_cast<unsigned>(number))
            - static_cast<unsigned>(adjustment) + static_cast<unsigned>(offset.value);
        result = mkExpressionType(unqualified(type), base, DebugMarkerType::Data);
        return true;
    }
    const TOBFValue value = expr->evaluate();
    if (value.failed)
        return false;
    if (value.section != nullptr && (type == nullptr || !type->isFunction())) {
        result = locatedIn(type, static_cast<unsigned>(value.value), DebugMarkerType::Data);
        return true;
    }
    if (forLocation)
        return false;
    const bool isFunction = type != nullptr && type->isFunction();
    result = mkExpressionType(unqualified(type), static_cast<quint64>(value.value),
                              DebugMarkerType::Constant, 0,
                              isFunction ? sizeOf(m_types.addressType()) : 0);
    return true;
}

/// A place in the memory that the type's qualifier names, else in that of `kind`.
ExpressionType TOBFExpressionEvaluator::locatedIn(TOBFType* type, quint64 address, Kind kind)
{
    TOBFType* plain = unqualified(type, kind);
    return mkExpressionType(plain, address, kind);
}

unsigned TOBFExpressionEvaluator::registerDereference(unsigned number, unsigned index)
{
    constexpr unsigned MostRegisters = 64;
    for (unsigned i = 0; i < std::min(index, MostRegisters); ++i)
        number = nextRegisterNumber(number);
    if (index >= MostRegisters || registerNumberToName(number).isEmpty())
        throw ParserException("no such register");
    return number;
}

ExpressionType TOBFExpressionEvaluator::getRegister(const char* name)
{
    const int number = registerNameToNumber(QString::fromUtf8(name));
    if (number == -1)
        throw ParserException("no such register");
    const auto base = static_cast<unsigned>(number);
    return mkExpressionType(m_types.unsignedOfSize(getRegisterLength(base)), base,
                            DebugMarkerType::Register);
}

bool TOBFExpressionEvaluator::isUserTypeName(const char* name)
{
    return getNamedType(name) != nullptr;
}

ExpressionType TOBFExpressionEvaluator::getSizeof(MarkerType* marker)
{
    return {quint64{sizeOf(located(marker)->type())}, 4, 0};
}

ExpressionType TOBFExpressionEvaluator::getAddressof(MarkerType* marker)
{
    const MyMarker* it = located(marker);
    if (!it->isMemory())
        throw ParserException("can't take address of register/constant");
    return mkExpressionType(m_types.pointerTo(it->type(), it->address()), it->address(),
                            DebugMarkerType::Constant);
}

/// The same place, `by` bytes further.
ExpressionType TOBFExpressionEvaluator::moved(const MyMarker* marker, TOBFType* type, unsigned by,
                                              unsigned size, int bitOffset, int bitSize)
{
    Kind kind = marker->kind();
    TOBFType* plain = unqualified(type, kind);
    if (!marker->isMemory())
        kind = marker->kind();
    return mkExpressionType(plain, marker->constant(), kind, marker->offset() + by, size, bitOffset,
                            bitSize);
}

ExpressionType TOBFExpressionEvaluator::pointee(MyMarker* pointer, unsigned index)
{
    const auto* type = static_cast<TOBFPtrType*>(pointer->type());
    quint64 address = getValue(pointer).getUInteger();
    if (type->representation() == TAG_PTR_REP_ALTERNATIVE)
        address *= static_cast<unsigned>(TOBFModule::processorWordSize());
    Kind kind = DebugMarkerType::Data;
    TOBFType* target = unqualified(type->target(), kind);
    if (target == nullptr)
        target = m_types.defaultType();
    return mkExpressionType(target, static_cast<unsigned>(address), kind, index * sizeOf(target));
}

ExpressionType TOBFExpressionEvaluator::element(const MyMarker* array, TOBFType* type,
                                                unsigned index)
{
    TOBFType* element = type->getElementType();
    return moved(array, element, index * sizeOf(element));
}

ExpressionType TOBFExpressionEvaluator::getDereference(MarkerType* marker, unsigned index)
{
    MyMarker* it = located(marker);
    TOBFType* type = it->type();
    if (type->isPtr())
        return pointee(it, index);
    if (type->isArray())
        return element(it, type, index);
    throw ParserException("not an array type");
}

ExpressionType TOBFExpressionEvaluator::getDereference(MarkerType* marker, const char* field)
{
    ExpressionType target;
    const MyMarker* structure = located(marker);
    if (structure->type()->isPtr()) {
        target = pointee(located(marker), 0);
        structure = located(target.getMarker());
    }
    TOBFType* type = structure->type();
    if (!type->isStruc())
        throw ParserException("not a struct type");
    TOBFField* found = type->findField(HString::intern(std::string(field)));
    if (found == nullptr)
        throw ParserException("unknown field");
    return fieldOf(structure, type, found);
}

ExpressionType TOBFExpressionEvaluator::getDereference(MarkerType*, const QStringList&)
{
    throw ParserException(":: not supported");
}

ExpressionType TOBFExpressionEvaluator::fieldOf(const MyMarker* structure, TOBFType* type,
                                                TOBFField* field)
{
    if (field->kind() == TOBFKind::StaticField) {
        ExpressionType result;
        TOBFExpr* location = static_cast<TOBFStaticField*>(field)->location();
        if (location == nullptr || !getExpressionType(field->type(), location, result, false))
            throw ParserException("invalid address");
        return result;
    }
    const auto* dynamic = static_cast<TOBFDynamicField*>(field);
    const TOBFType* plain = unqualified(field->type());
    const bool isWhole = plain != nullptr && qint64{plain->size()} * 8 == dynamic->bitSize();
    const bool isAggregate = plain != nullptr && !plain->isSimple();
    if (dynamic->bitOffset() % 8 == 0 && (isWhole || isAggregate))
        return moved(structure, field->type(), static_cast<unsigned>(dynamic->bitOffset() / 8));
    return bitFieldOf(structure, type, dynamic);
}

/// A bit-field is accessed by units of its type, as the compiler does; one that doesn't lie in such
/// a unit, or whose unit isn't all in the structure, by the bytes that it lies in.
ExpressionType TOBFExpressionEvaluator::bitFieldOf(const MyMarker* structure, TOBFType* type,
                                                   const TOBFDynamicField* field)
{
    constexpr unsigned LargestUnit = 8;
    if (field->bitOffset() < 0 || field->bitSize() <= 0
        || field->bitSize() > static_cast<int>(LargestUnit) * 8)
        throw ParserException("invalid address");
    const auto bitOffset = static_cast<unsigned>(field->bitOffset());
    const auto bitSize = static_cast<unsigned>(field->bitSize());
    unsigned unit = field->type() != nullptr ? sizeOf(field->type()) : 0;
    unsigned first = 0;
    bool fits = unit >= 1 && unit <= LargestUnit;
    if (fits) {
        first = bitOffset / (unit * 8) * unit;
        fits = bitOffset - first * 8 + bitSize <= unit * 8 && first + unit <= sizeOf(type);
    }
    if (!fits) {
        first = bitOffset / 8;
        unit = std::min((bitOffset % 8 + bitSize + 7) / 8, LargestUnit);
    }
    return moved(structure, field->type(), first, unit, static_cast<int>(bitOffset - first * 8),
                 static_cast<int>(bitSize));
}
