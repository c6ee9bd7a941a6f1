#pragma once

#include "toolchain/kcc/ObjectConverter.h"
#include "toolchain/kcc/dwarf/DwarfUnit.h"

#include <vector>

/// What is needed to tell where the variables of one function are.
struct FunctionFrame {
    unsigned section = 0;               ///< of the compiler's file; 0 outside functions
    const StackDepths* stack = nullptr; ///< null outside functions
    unsigned frameRegister = 1;         ///< the base of frame-relative places
    DwarfRange range;
};

/// A variable's location while the code is within the range.
struct RangedLocation {
    DwarfRange range;
    TOBFExpr* location;
};

/// The register that frame-relative places of a function count from.
unsigned frameRegister(const DwarfEntry& function);

/// The location as the object model holds it: an address, a register, a distance from a register,
/// or a constant; null for one that it can't hold. `size` is the variable's in bytes.
TOBFExpr* convertLocation(ObjectConverter& converter, const DwarfUnit& unit,
                          const FunctionFrame& frame, std::span<const std::uint8_t> expression,
                          int size);
