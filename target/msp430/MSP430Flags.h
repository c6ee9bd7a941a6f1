#pragma once

#include "target/msp430/MSP430Operands.h"

/// The rule for the V flag.
enum class VMode { Add, Subtract, ExclusiveOr, Clear };

namespace MSP430Flags {

/// The bits in which the rule finds an overflow; only the sign bit of the result means anything.
/// Subtract takes the subtrahend itself as the source, not its complement.
template <VMode mode>
constexpr unsigned overflow(unsigned source, unsigned destination, unsigned result)
{
    switch (mode) {
    case VMode::Add: return ~(source ^ destination) & (source ^ result);
    case VMode::Subtract: return (source ^ destination) & (destination ^ result);
    case VMode::ExclusiveOr: return source & destination;
    case VMode::Clear: return 0;
    }
    return 0;
}

/// C, Z, N and V of a result that holds its carry in the bit above the operand.
template <VMode mode>
constexpr unsigned ofResult(unsigned mask, unsigned source, unsigned destination, unsigned result)
{
    using namespace MSP430Status;
    const unsigned sign = (mask >> 1) + 1;
    return ((result & (mask + 1)) != 0 ? C : 0) | ((result & mask) == 0 ? Z : 0)
        | ((result & sign) != 0 ? N : 0)
        | ((overflow<mode>(source, destination, result) & sign) != 0 ? V : 0);
}

/// C, Z, N and V of an address instruction, from its operands sign-extended from bit 19 to 32 bits
/// and their 32-bit sum or difference.
template <VMode mode>
constexpr unsigned ofAddress(unsigned source, unsigned destination, unsigned result)
{
    using namespace MSP430Status;
    constexpr unsigned sign = 0x80000000;
    return ((result & 0x100000) != 0 ? C : 0) | (result == 0 ? Z : 0)
        | ((result & sign) != 0 ? N : 0)
        | ((overflow<mode>(source, destination, result) & sign) != 0 ? V : 0);
}

inline constexpr unsigned arithmetic =
    MSP430Status::C | MSP430Status::Z | MSP430Status::N | MSP430Status::V;

} // namespace MSP430Flags
