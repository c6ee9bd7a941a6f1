// How the evaluator reads and writes the values of locations.

#include "debugger/expressions/ParserException.h"
#include "debugger/expressions/TOBFExpressionEvaluator.h"

#include "base/Endian.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/model/TOBFType.h"

#include <algorithm>

namespace {

constexpr unsigned LargestNumber = 8;
constexpr unsigned AddressBytes = 3;
constexpr const char* NotDecoded = "can't decode non simple type";
constexpr const char* NotEncoded = "can't encode non simple type";

/// Takes the innermost buffer away, however its use ends.
class BufferUse {
public:
    BufferUse(TOBFExpressionEvaluator& evaluator, const MyMarker* marker) : m_evaluator(evaluator)
    {
        m_evaluator.fillMemoryBuffer(marker, false);
    }
    ~BufferUse() { m_evaluator.discardMemoryBuffer(); }
    BufferUse(const BufferUse&) = delete;
    BufferUse& operator=(const BufferUse&) = delete;

private:
    TOBFExpressionEvaluator& m_evaluator;
};

long long signExtended(quint64 value, unsigned size)
{
    const unsigned unused = 64 - size * 8;
    return static_cast<long long>(value << unused) >> unused;
}

/// A number's bits for an integer: a floating value is truncated.
quint64 integerBits(const ExpressionType& value)
{
    return value.getType() == ExpressionType::UnsignedInteger
        ? value.getUInteger()
        : static_cast<quint64>(value.getInteger());
}

TOBFType* withoutQualifiers(TOBFType* type)
{
    while (type != nullptr && type->isQualified())
        type = type->getElementType();
    return type;
}

/// Bytes of a pointer's value; a type without a proper size has those of an address.
unsigned pointerSize(const TOBFType* type)
{
    const int size = type->size();
    return size >= 1 && size <= static_cast<int>(LargestNumber)
        ? static_cast<unsigned>(size)
        : static_cast<unsigned>(TOBFModule::processorAddressSize());
}

/// Bytes that each of a value's registers holds. One that doesn't fit in a register of an address'
/// width has a word in each.
unsigned pieceSize(const MyMarker& marker)
{
    const unsigned length = std::clamp(marker.registerLength(), 1U, LargestNumber);
    const bool fits = quint64{marker.offset()} + marker.size() <= length;
    return length == AddressBytes && !fits ? AddressBytes - 1 : length;
}

/// A bit-field's unit as a number of eight bytes, so that units of any size work alike.
struct BitFieldUnit {
    BitFieldUnit(const MyMarker& marker, quint64 number)
        : shift(static_cast<unsigned>(marker.bitOffset())),
          width(static_cast<unsigned>(marker.bitSize()))
    {
        Endian::packUINT64(bytes, 0, number, Endian::Little);
    }
    quint64 field() const
    {
        return Endian::unpackBitField(bytes, 0, sizeof bytes, shift, width, Endian::Little, true);
    }
    quint64 with(quint64 value)
    {
        Endian::packBitField(bytes, 0, value, sizeof bytes, shift, width, Endian::Little, true);
        return Endian::unpackUINT64(bytes, 0, Endian::Little);
    }

    unsigned shift;
    unsigned width;
    unsigned char bytes[LargestNumber];
};

} // namespace

TOBFExpressionEvaluator::OneRead::OneRead(TOBFExpressionEvaluator& evaluator,
                                          const MyMarker& marker)
    : m_evaluator(evaluator),
      m_outer(evaluator.m_oneRead),
      m_kind(marker.kind()),
      m_start(marker.address()),
      m_size(marker.isMemory() && marker.size() <= LargestWholeValue ? marker.size() : 0)
{
    evaluator.m_oneRead = this;
}

TOBFExpressionEvaluator::OneRead::~OneRead() { m_evaluator.m_oneRead = m_outer; }

bool TOBFExpressionEvaluator::OneRead::covers(DebugMarkerType::LocationKind kind, unsigned address,
                                              unsigned size) const
{
    return kind == m_kind && size <= m_size && address - m_start <= m_size - size;
}

TOBFExpressionEvaluator::OneRead*
TOBFExpressionEvaluator::OneRead::find(OneRead* innermost, DebugMarkerType::LocationKind kind,
                                       unsigned address, unsigned size)
{
    OneRead* one = innermost;
    while (one != nullptr && !one->covers(kind, address, size))
        one = one->m_outer;
    return one;
}

const unsigned char* TOBFExpressionEvaluator::OneRead::at(unsigned address)
{
    if (m_bytes.empty()) {
        std::vector<unsigned char> bytes(m_size);
        if (OneRead* const around = find(m_outer, m_kind, m_start, m_size))
            std::copy_n(around->at(m_start), m_size, bytes.data());
        else
            m_evaluator.read(m_kind, m_start, m_size, bytes.data());
        m_bytes = std::move(bytes);
    }
    return m_bytes.data() + (address - m_start);
}

void TOBFExpressionEvaluator::fillMemoryBuffer(const MyMarker* marker, bool lazy)
{
    const MyMarker copy = *marker;
    const MemoryBlock::Read read = [this, copy](unsigned offset, unsigned size,
                                                unsigned char* bytes) {
        readBytes(copy, offset, size, bytes);
    };
    if (marker->size() > LargestWholeValue || (lazy && marker->isMemory()))
        pushBuffer(std::make_unique<LazyMemoryBlock>(marker->size(), read));
    else
        pushBuffer(std::make_unique<WholeMemoryBlock>(marker->size(), read));
}

void TOBFExpressionEvaluator::writeMemoryBuffer(const MyMarker* marker)
{
    if (marker->kind() == DebugMarkerType::Constant)
        throw ParserException("can't update a constant");
    buffer().store([&](unsigned offset, unsigned size, const unsigned char* bytes) {
        writeBytes(*marker, offset, size, bytes);
    });
}

void TOBFExpressionEvaluator::readBytes(const MyMarker& marker, unsigned offset, unsigned size,
                                        unsigned char* bytes)
{
    if (marker.isMemory()) {
        const unsigned address = marker.address() + offset;
        if (OneRead* const one = OneRead::find(m_oneRead, marker.kind(), address, size)) {
            std::copy_n(one->at(address), size, bytes);
            return;
        }
        return read(marker.kind(), address, size, bytes);
    }
    if (marker.kind() == DebugMarkerType::Constant) {
        for (unsigned i = 0; i < size; ++i) {
            const quint64 at = quint64{marker.offset()} + offset + i;
            bytes[i] = at < LargestNumber ? static_cast<unsigned char>(marker.constant() >> at * 8)
                                          : static_cast<unsigned char>(0);
        }
        return;
    }
    eachRegisterPiece(
        marker, offset, size, [&](unsigned number, unsigned from, unsigned first, unsigned count) {
            const quint64 value = getRegister(number);
            for (unsigned i = 0; i < count; ++i)
                bytes[first + i] = static_cast<unsigned char>(value >> (from + i) * 8);
        });
}

void TOBFExpressionEvaluator::writeBytes(const MyMarker& marker, unsigned offset, unsigned size,
                                         const unsigned char* bytes)
{
    if (marker.isMemory())
        return write(marker.kind(), marker.address() + offset, size, bytes);
    eachRegisterPiece(marker, offset, size,
                      [&](unsigned number, unsigned from, unsigned first, unsigned count) {
                          // What the value doesn't fill stays.
                          quint64 value = getRegister(number);
                          for (unsigned i = 0; i < count; ++i) {
                              const unsigned shift = (from + i) * 8;
                              value &= ~(quint64{0xFF} << shift);
                              value |= quint64{bytes[first + i]} << shift;
                          }
                          setRegister(number, value);
                      });
}

/// Visits the registers that hold bytes `offset` to `offset + size` of a value: `count` bytes of
/// the register, from its byte `from` on, are those from `first` on of what is visited.
void TOBFExpressionEvaluator::eachRegisterPiece(
    const MyMarker& marker, unsigned offset, unsigned size,
    const std::function<void(unsigned number, unsigned from, unsigned first, unsigned count)>&
        visit)
{
    const unsigned piece = pieceSize(marker);
    for (unsigned done = 0; done < size;) {
        const quint64 at = quint64{marker.offset()} + offset + done;
        const auto index = static_cast<unsigned>(at / piece);
        const auto from = static_cast<unsigned>(at % piece);
        const unsigned count = std::min(piece - from, size - done);
        visit(registerDereference(marker.base(), index), from, done, count);
        done += count;
    }
}

ExpressionType TOBFExpressionEvaluator::getValue(MarkerType* marker)
{
    const auto* it = static_cast<MyMarker*>(marker);
    const BufferUse use(*this, it);
    if (!it->isBitField())
        return decodeType(it->type());
    const BitFieldUnit unit(*it, getNumber(0, it->size()));
    return {unit.field(), it->size(), unit.width};
}

void TOBFExpressionEvaluator::assign(MarkerType* marker, const ExpressionType& value)
{
    const auto* it = static_cast<MyMarker*>(marker);
    const BufferUse use(*this, it);
    if (it->isBitField()) {
        if (!value.isNumberType() && value.getType() != ExpressionType::Boolean)
            throw ParserException(NotEncoded);
        BitFieldUnit unit(*it, getNumber(0, it->size()));
        putNumber(unit.with(integerBits(value)), 0, it->size());
    } else {
        encodeType(it->type(), value);
    }
    writeMemoryBuffer(it);
}

ExpressionType TOBFExpressionEvaluator::decodeType(TOBFType* type, unsigned offset)
{
    type = withoutQualifiers(type);
    if (type == nullptr)
        type = m_types.defaultType();
    if (type->isFloat())
        return {getFloat(type->size(), offset), static_cast<unsigned>(type->size())};
    if (type->isFunction())
        type = m_types.addressType();
    if (type->isPtr())
        return {getNumber(offset, pointerSize(type)), pointerSize(type), 0};
    const auto size = static_cast<unsigned>(type->size());
    if (!type->isSimple() || size < 1 || size > LargestNumber)
        throw ParserException(NotDecoded);
    const quint64 value = getNumber(offset, size);
    if (static_cast<TOBFSimpleType*>(type)->tag() == TAG_INT)
        return {signExtended(value, size), size, 0};
    return {value, size, 0};
}

void TOBFExpressionEvaluator::encodeType(TOBFType* type, const ExpressionType& value,
                                         unsigned offset)
{
    type = withoutQualifiers(type);
    if (type == nullptr)
        type = m_types.defaultType();
    if (!value.isNumberType() && value.getType() != ExpressionType::Boolean)
        throw ParserException(NotEncoded);
    if (type->isFloat())
        return putFloat(value.getFloating(), type->size(), offset);
    if (type->isPtr())
        return putNumber(integerBits(value), offset, pointerSize(type));
    const auto size = static_cast<unsigned>(type->size());
    if (!type->isSimple() || size < 1 || size > LargestNumber)
        throw ParserException(NotEncoded);
    putNumber(integerBits(value), offset, size);
}
