#pragma once

#include "toolchain/kcc/ElfObject.h"

#include <cstdint>
#include <vector>

/// A base MSP430 instruction of a code section, or a word that isn't one.
struct DecodedInsn {
    std::uint32_t offset = 0;
    std::uint16_t word = 0;
    bool isData = false;      ///< no instruction: data between the code
    unsigned length = 2;      ///< bytes
    std::uint32_t source = 0; ///< where the source's word stands; 0 if it has none
    std::uint32_t destination = 0;

    bool isJump() const { return !isData && word >= 0x2000 && word <= 0x3FFF; }
    bool isUnconditionalJump() const { return !isData && word >= 0x3C00 && word <= 0x3FFF; }
    /// Where a jump leads; may lie outside the section if the code is damaged.
    std::int64_t jumpTarget() const;
    /// Nothing falls through: a return, a branch, an unconditional jump.
    bool endsFlow() const;
};

/// The instructions of a section in their order.
std::vector<DecodedInsn> decodeSection(const ElfSection& section);

/// How deep the stack is at each instruction, and what the prologue did.
struct StackDepths {
    static constexpr int Unknown = -1;

    std::vector<int> depths; ///< bytes pushed since entry, by instruction, before it runs
    int body = 0;            ///< the depth behind the prologue
    /// R4 holds the depth at `framePointer`, for functions with memory of variable size.
    bool hasFramePointer = false;
    int framePointer = 0;
    /// Registers that were pushed after the frame pointer was set.
    int pushedBehindFramePointer = 0;
    /// Registers that the prologue pushed, in the order of pushing.
    std::vector<unsigned> saved;
};

/// Follows the control flow from the section's start. `entryDepth` is what stands on the stack
/// there above the return address.
StackDepths computeStackDepths(const ElfSection& section, const std::vector<DecodedInsn>& insns,
                               int entryDepth);
