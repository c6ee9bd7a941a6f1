#include "packages/archive/Crc32.h"

#include <array>

namespace {

constexpr std::array<std::uint32_t, 256> makeTable()
{
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t crc = byte << 24;
        for (int bit = 0; bit < 8; ++bit)
            crc = crc << 1 ^ ((crc & 0x80000000) != 0 ? 0x04C11DB7 : 0);
        table[byte] = crc;
    }
    return table;
}

constexpr std::array<std::uint32_t, 256> Table = makeTable();

} // namespace

std::uint32_t calc_crc32(const unsigned char* bytes, int length)
{
    std::uint32_t crc = 0xFFFFFFFF;
    for (int i = 0; i < length; ++i)
        crc = crc << 8 ^ Table[crc >> 24 ^ bytes[i]];
    return ~crc;
}
