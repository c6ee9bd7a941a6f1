#pragma once

#include <cstdint>

/// Packing of numbers into byte buffers in a given byte order. Offsets and sizes are bytes; the
/// buffer must hold offset + size of them.
namespace Endian {

/// 0 is little-endian; any other value is big-endian.
enum EndianType { Little = 0, Big = 1 };

/// Reads `size` bytes (1, 2, 4 or 8) as an unsigned number; another size gives 0.
inline std::uint64_t unpackNumber(const unsigned char* buffer, unsigned offset, unsigned size,
                                  EndianType endian)
{
    if (size != 1 && size != 2 && size != 4 && size != 8)
        return 0;
    std::uint64_t value = 0;
    for (unsigned i = 0; i < size; ++i) {
        const unsigned at = endian == Little ? size - 1 - i : i;
        value = value << 8 | buffer[offset + at];
    }
    return value;
}

/// Writes the low `size` bytes (1, 2, 4 or 8) of `value`; another size writes nothing.
inline void packNumber(unsigned char* buffer, unsigned offset, std::uint64_t value, unsigned size,
                       EndianType endian)
{
    if (size != 1 && size != 2 && size != 4 && size != 8)
        return;
    for (unsigned i = 0; i < size; ++i) {
        const unsigned at = endian == Little ? i : size - 1 - i;
        buffer[offset + at] = static_cast<unsigned char>(value);
        value >>= 8;
    }
}

inline void packUINT16(unsigned char* buffer, unsigned offset, std::uint16_t value,
                       EndianType endian)
{
    packNumber(buffer, offset, value, 2, endian);
}
inline void packUINT32(unsigned char* buffer, unsigned offset, std::uint32_t value,
                       EndianType endian)
{
    packNumber(buffer, offset, value, 4, endian);
}
inline void packUINT64(unsigned char* buffer, unsigned offset, std::uint64_t value,
                       EndianType endian)
{
    packNumber(buffer, offset, value, 8, endian);
}
inline void packINT16(unsigned char* buffer, unsigned offset, std::int16_t value, EndianType endian)
{
    packNumber(buffer, offset, static_cast<std::uint16_t>(value), 2, endian);
}
inline void packINT32(unsigned char* buffer, unsigned offset, std::int32_t value, EndianType endian)
{
    packNumber(buffer, offset, static_cast<std::uint32_t>(value), 4, endian);
}

inline std::uint16_t unpackUINT16(const unsigned char* buffer, unsigned offset, EndianType endian)
{
    return static_cast<std::uint16_t>(unpackNumber(buffer, offset, 2, endian));
}
inline std::uint32_t unpackUINT32(const unsigned char* buffer, unsigned offset, EndianType endian)
{
    return static_cast<std::uint32_t>(unpackNumber(buffer, offset, 4, endian));
}
inline std::uint64_t unpackUINT64(const unsigned char* buffer, unsigned offset, EndianType endian)
{
    return unpackNumber(buffer, offset, 8, endian);
}
inline std::int16_t unpackINT16(const unsigned char* buffer, unsigned offset, EndianType endian)
{
    return static_cast<std::int16_t>(unpackUINT16(buffer, offset, endian));
}
inline std::int32_t unpackINT32(const unsigned char* buffer, unsigned offset, EndianType endian)
{
    return static_cast<std::int32_t>(unpackUINT32(buffer, offset, endian));
}

/// Reads the number of `size` bytes and takes `bitWidth` bits of it. The shift is `bitOffset` if
/// `lowFirst`, else counted from the top of the unit that holds the field.
std::uint64_t unpackBitField(const unsigned char* buffer, unsigned offset, unsigned size,
                             unsigned bitOffset, unsigned bitWidth, EndianType endian,
                             bool lowFirst);

/// Replaces those bits by the low bits of `value` and writes the number back.
void packBitField(unsigned char* buffer, unsigned offset, std::uint64_t value, unsigned size,
                  unsigned bitOffset, unsigned bitWidth, EndianType endian, bool lowFirst);

} // namespace Endian
