#pragma once

#include <cstdint>

class TOBFExpr;

/// The fields of instruction words.
namespace AsmField {

/// How many values a field of that size has.
constexpr std::int64_t Bytes = 0x100, Words = 0x10000, Addresses = 0x100000;

/// Throws AsmError for a known value that the field doesn't hold, signed or unsigned; `what` names
/// it.
void requireRange(const TOBFExpr* expr, std::int64_t size, const char* what);

/// A register's number from a bit up.
constexpr unsigned bits(int reg, int position = 0)
{
    return static_cast<unsigned>(reg) << position;
}

} // namespace AsmField
