#include "objfile/msp430/MSP430Instructions.h"

namespace {

constexpr unsigned indexBits = 0xFFF0;

consteval std::array<MSP430Operation, 4096> operationsByWord()
{
    std::array<MSP430Operation, 4096> operations{};
    for (unsigned word = 0x1800; word < 0x2000; word += 0x10)
        operations[word >> 4] = MSP430Operation::Extension;
    for (const MSP430Instruction& instruction : msp430Instructions) {
        // Every value of the bits that the instruction leaves open.
        const unsigned open = ~unsigned{instruction.mask} & indexBits;
        unsigned bits = 0;
        do {
            operations[(instruction.opcode | bits) >> 4] = instruction.operation;
            bits = (bits - open) & open;
        } while (bits != 0);
    }
    return operations;
}

} // namespace

constinit const std::array<MSP430Operation, 4096> msp430Operations = operationsByWord();

const MSP430Instruction* findMSP430Instruction(std::uint16_t word)
{
    for (const MSP430Instruction& instruction : msp430Instructions)
        if ((word & instruction.mask) == instruction.opcode)
            return &instruction;
    return nullptr;
}
