#include "debugger/expressions/DebugExpressionParser.h"

#include "base/Endian.h"
#include "debugger/expressions/ParserException.h"
#include "objfile/model/TOBFModule.h"

#include <bit>

namespace {

constexpr unsigned LargestNumber = 8;
constexpr bool IsBigEndian = TOBFModule::processorBigEndian();
constexpr Endian::EndianType Order = IsBigEndian ? Endian::Big : Endian::Little;

/// Where a number of fewer bytes stands in eight.
unsigned placeIn8(unsigned size) { return IsBigEndian ? LargestNumber - size : 0; }

} // namespace

quint64 DebugExpressionParser::getNumber(unsigned offset, unsigned size)
{
    unsigned char bytes[LargestNumber] = {};
    if (size > LargestNumber)
        return 0;
    buffer().get(offset, size, bytes + placeIn8(size));
    return Endian::unpackUINT64(bytes, 0, Order);
}

void DebugExpressionParser::putNumber(quint64 value, unsigned offset, unsigned size)
{
    unsigned char bytes[LargestNumber];
    if (size > LargestNumber)
        return;
    Endian::packUINT64(bytes, 0, value, Order);
    buffer().put(offset, size, bytes + placeIn8(size));
}

double DebugExpressionParser::getFloat(int size, unsigned offset)
{
    switch (size) {
    case 4: return std::bit_cast<float>(static_cast<quint32>(getNumber(offset, 4)));
    case 8: return std::bit_cast<double>(getNumber(offset, 8));
    default: throw ParserException("can't decode non simple type");
    }
}

void DebugExpressionParser::putFloat(double value, int size, unsigned offset)
{
    switch (size) {
    case 4: putNumber(std::bit_cast<quint32>(static_cast<float>(value)), offset, 4); break;
    case 8: putNumber(std::bit_cast<quint64>(value), offset, 8); break;
    default: throw ParserException("can't encode non simple type");
    }
}

void DebugExpressionParser::read(DebugMarkerType::LocationKind kind, unsigned address,
                                 unsigned size, unsigned char* buffer)
{
    switch (kind) {
    case DebugMarkerType::Peripheral: readPeripheralMemory(address, size, buffer); break;
    case DebugMarkerType::Eeprom: readEepromMemory(address, size, buffer); break;
    case DebugMarkerType::Code: readCodeMemory(address, size, buffer); break;
    default: readMemory(address, size, buffer); break;
    }
}

void DebugExpressionParser::write(DebugMarkerType::LocationKind kind, unsigned address,
                                  unsigned size, const unsigned char* buffer)
{
    switch (kind) {
    case DebugMarkerType::Peripheral: writePeripheralMemory(address, size, buffer); break;
    case DebugMarkerType::Eeprom: writeEepromMemory(address, size, buffer); break;
    case DebugMarkerType::Code: writeCodeMemory(address, size, buffer); break;
    default: writeMemory(address, size, buffer); break;
    }
}
