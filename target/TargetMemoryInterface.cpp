#include "target/TargetMemoryInterface.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr unsigned stringBlock = 64;
constexpr unsigned conversionBlock = 256;
constexpr unsigned verifyBlock = 1024;

/// Calls `visit(offset, size)` for `length` bytes in blocks of at most `block`, while it answers
/// true.
template <class Visitor> bool inBlocks(unsigned length, unsigned block, Visitor visit)
{
    for (unsigned done = 0; done < length;) {
        const unsigned size = std::min(block, length - done);
        if (!visit(done, size))
            return false;
        done += size;
    }
    return true;
}

template <class Number>
void pokeNumbers(TargetMemoryInterface& memory, unsigned address, unsigned count,
                 const Number* values)
{
    constexpr unsigned unit = sizeof(Number);
    constexpr unsigned perBlock = conversionBlock / unit;
    std::array<unsigned char, conversionBlock> buffer;
    inBlocks(count, perBlock, [&](unsigned done, unsigned size) {
        for (unsigned i = 0; i < size; ++i)
            Endian::packNumber(buffer.data(), i * unit, values[done + i], unit, memory.endian());
        memory.pokeBytes(address + done * unit, size * unit, buffer.data());
        return true;
    });
}

template <class Number>
void peekNumbers(TargetMemoryInterface& memory, unsigned address, unsigned count, Number* values)
{
    constexpr unsigned unit = sizeof(Number);
    std::array<unsigned char, conversionBlock> buffer;
    inBlocks(count, conversionBlock / unit, [&](unsigned done, unsigned size) {
        memory.peekBytes(address + done * unit, size * unit, buffer.data());
        for (unsigned i = 0; i < size; ++i)
            values[done + i] = static_cast<Number>(
                Endian::unpackNumber(buffer.data(), i * unit, unit, memory.endian()));
        return true;
    });
}

template <class Number>
void fillNumbers(TargetMemoryInterface& memory, unsigned address, unsigned count, Number value)
{
    constexpr unsigned unit = sizeof(Number);
    std::array<unsigned char, conversionBlock> buffer;
    for (unsigned offset = 0; offset < conversionBlock; offset += unit)
        Endian::packNumber(buffer.data(), offset, value, unit, memory.endian());
    inBlocks(count, conversionBlock / unit, [&](unsigned done, unsigned size) {
        memory.pokeBytes(address + done * unit, size * unit, buffer.data());
        return true;
    });
}

} // namespace

TargetMemoryInterface::~TargetMemoryInterface() = default;

QString TargetMemoryInterface::peekString(unsigned address, unsigned maxLength)
{
    QString result;
    inBlocks(maxLength, stringBlock, [&](unsigned done, unsigned size) {
        std::array<char, stringBlock> buffer;
        peekBytes(address + done, size, reinterpret_cast<unsigned char*>(buffer.data()));
        const std::size_t length = strnlen(buffer.data(), size);
        result += QString::fromLatin1(buffer.data(), static_cast<qsizetype>(length));
        return length == size;
    });
    return result;
}

void TargetMemoryInterface::downloadBytes(unsigned address, unsigned length,
                                          const unsigned char* data)
{
    pokeBytes(address, length, data);
}

void TargetMemoryInterface::downloadBytes(unsigned address, unsigned length,
                                          const unsigned char* data, bool)
{
    downloadBytes(address, length, data);
}

void TargetMemoryInterface::uploadBytes(unsigned address, unsigned length, unsigned char* data)
{
    peekBytes(address, length, data);
}

void TargetMemoryInterface::memsetBytes(unsigned address, unsigned length, unsigned char value)
{
    fillNumbers(*this, address, length, value);
}

bool TargetMemoryInterface::verifyBytes(unsigned address, unsigned length,
                                        const unsigned char* data)
{
    std::array<unsigned char, verifyBlock> buffer;
    return inBlocks(length, verifyBlock, [&](unsigned done, unsigned size) {
        peekBytes(address + done, size, buffer.data());
        return std::memcmp(buffer.data(), data + done, size) == 0;
    });
}

void TargetMemoryInterface::eraseBytes(unsigned address, unsigned length, unsigned* erasedStart,
                                       unsigned* erasedLength)
{
    if (erasedStart != nullptr)
        *erasedStart = address;
    if (erasedLength != nullptr)
        *erasedLength = length;
}

void TargetMemoryInterface::pokeMultUint16(unsigned address, unsigned count,
                                           const unsigned short* values)
{
    pokeNumbers(*this, address, count, values);
}

void TargetMemoryInterface::peekMultUint16(unsigned address, unsigned count, unsigned short* values)
{
    peekNumbers(*this, address, count, values);
}

void TargetMemoryInterface::memsetUint16(unsigned address, unsigned count, unsigned short value)
{
    fillNumbers(*this, address, count, value);
}

void TargetMemoryInterface::pokeMultUint32(unsigned address, unsigned count, const unsigned* values)
{
    pokeNumbers(*this, address, count, values);
}

void TargetMemoryInterface::peekMultUint32(unsigned address, unsigned count, unsigned* values)
{
    peekNumbers(*this, address, count, values);
}

void TargetMemoryInterface::memsetUint32(unsigned address, unsigned count, unsigned value)
{
    fillNumbers(*this, address, count, value);
}

void TargetMemoryInterface::pokeByte(unsigned address, unsigned char value)
{
    pokeBytes(address, 1, &value);
}

unsigned char TargetMemoryInterface::peekByte(unsigned address)
{
    unsigned char value = 0;
    peekBytes(address, 1, &value);
    return value;
}

void TargetMemoryInterface::pokeUint16(unsigned address, unsigned short value)
{
    pokeMultUint16(address, 1, &value);
}

unsigned short TargetMemoryInterface::peekUint16(unsigned address)
{
    unsigned short value = 0;
    peekMultUint16(address, 1, &value);
    return value;
}

void TargetMemoryInterface::pokeUint32(unsigned address, unsigned value)
{
    pokeMultUint32(address, 1, &value);
}

unsigned TargetMemoryInterface::peekUint32(unsigned address)
{
    unsigned value = 0;
    peekMultUint32(address, 1, &value);
    return value;
}

void TargetMemoryInterface::pokeWord(unsigned address, std::uint64_t value)
{
    pokeNumber(address, m_wordLength, value);
}

std::uint64_t TargetMemoryInterface::peekWord(unsigned address)
{
    return peekNumber(address, m_wordLength);
}

void TargetMemoryInterface::pokeNumber(unsigned address, unsigned size, std::uint64_t value)
{
    std::array<unsigned char, 8> buffer{};
    Endian::packNumber(buffer.data(), 0, value, size, endian());
    pokeBytes(address, std::min(size, 8u), buffer.data());
}

std::uint64_t TargetMemoryInterface::peekNumber(unsigned address, unsigned size)
{
    std::array<unsigned char, 8> buffer{};
    peekBytes(address, std::min(size, 8u), buffer.data());
    return Endian::unpackNumber(buffer.data(), 0, size, endian());
}

bool TargetMemoryInterface::memoryExists(unsigned address, unsigned length)
{
    const unsigned last = length == 0 ? address : address + length - 1;
    return last >= address && addressRanges().find(address, last) != nullptr;
}
