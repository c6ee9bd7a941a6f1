#include "base/Endian.h"

namespace {

struct BitField {
    unsigned shift;
    std::uint64_t mask;
};

BitField locate(unsigned size, unsigned bitOffset, unsigned bitWidth, bool lowFirst)
{
    const unsigned bits = size * 8;
    const unsigned shift = lowFirst || bits == 0 ? bitOffset : bits - (bitOffset % bits + bitWidth);
    const std::uint64_t mask =
        bitWidth >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << bitWidth) - 1;
    return {shift & 63, mask};
}

} // namespace

std::uint64_t Endian::unpackBitField(const unsigned char* buffer, unsigned offset, unsigned size,
                                     unsigned bitOffset, unsigned bitWidth, EndianType endian,
                                     bool lowFirst)
{
    const BitField field = locate(size, bitOffset, bitWidth, lowFirst);
    return unpackNumber(buffer, offset, size, endian) >> field.shift & field.mask;
}

void Endian::packBitField(unsigned char* buffer, unsigned offset, std::uint64_t value,
                          unsigned size, unsigned bitOffset, unsigned bitWidth, EndianType endian,
                          bool lowFirst)
{
    const BitField field = locate(size, bitOffset, bitWidth, lowFirst);
    std::uint64_t number = unpackNumber(buffer, offset, size, endian);
    number &= ~(field.mask << field.shift);
    number |= (value & field.mask) << field.shift;
    packNumber(buffer, offset, number, size, endian);
}
