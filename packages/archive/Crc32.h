#pragma once

#include <cstdint>

/// The CRC-32 of a buffer, as CRC-32/BZIP2: polynomial 0x04C11DB7, most significant bit first,
/// initial value 0xFFFFFFFF, result complemented.
std::uint32_t calc_crc32(const unsigned char* bytes, int length);
