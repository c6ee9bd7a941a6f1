#pragma once

#include <array>
#include <cstdint>
#include <span>

/// The one table of MSP430 and MSP430X instructions, read by whatever decodes or encodes them.
/// Encodings and cycle counts: MSP430x2xx (SLAU144) and MSP430x5xx (SLAU208) family guides,
/// chapters "CPU" and "CPUX".

/// How an instruction word is laid out.
enum class MSP430Format : std::uint8_t {
    TwoOperand,  ///< opcode 15..12, source 11..8, destination mode 7, byte 6, source mode 5..4,
                 ///< destination 3..0
    OneOperand,  ///< byte 6, mode 5..4, register 3..0
    Jump,        ///< signed word offset 9..0
    Multiple,    ///< PUSHM, POPM: count - 1 in 7..4, register 3..0
    Rotate,      ///< count - 1 in 11..10, register 3..0
    AddressMove, ///< source 11..8, destination 3..0; some with a second word
    CallAddress, ///< CALLA forms that hold bits 19..16 of an address in 3..0
    NoOperand,   ///< RETI
};

/// What an instruction does. The two-operand ones stand in the order of their opcodes 4 to 15.
enum class MSP430Operation : std::uint8_t {
    Unsupported,
    Extension,
    Mov,
    Add,
    Addc,
    Subc,
    Sub,
    Cmp,
    Dadd,
    Bit,
    Bic,
    Bis,
    Xor,
    And,
    Rrc,
    Swpb,
    Rra,
    Sxt,
    Push,
    Call,
    Reti,
    CallaSource,
    CallaAbsolute,
    CallaRelative,
    CallaImmediate,
    Jne,
    Jeq,
    Jnc,
    Jc,
    Jn,
    Jge,
    Jl,
    Jmp,
    PushmA,
    PushmW,
    PopmA,
    PopmW,
    MovaIndirect,
    MovaIncrement,
    MovaFromAbsolute,
    MovaFromIndexed,
    MovaToAbsolute,
    MovaToIndexed,
    MovaImmediate,
    CmpaImmediate,
    AddaImmediate,
    SubaImmediate,
    Mova,
    Cmpa,
    Adda,
    Suba,
    Rrcm,
    Rram,
    Rlam,
    Rrum,
};

struct MSP430Instruction {
    const char*
        mnemonic; ///< upper case, without a size suffix unless the size is part of the opcode
    std::uint16_t opcode; ///< the fixed bits
    std::uint16_t mask;   ///< which bits are fixed
    MSP430Format format;
    MSP430Operation operation;
};

/// All instructions, by rising opcode within a format.
inline constexpr auto msp430Instructions = std::to_array<MSP430Instruction>({
    {"MOV", 0x4000, 0xF000, MSP430Format::TwoOperand, MSP430Operation::Mov},
    {"ADD", 0x5000, 0xF000, MSP430Format::TwoOperand, MSP430Operation::Add},
    {"ADDC", 0x6000, 0xF000, MSP430Format::TwoOperand, MSP430Operation::Addc},
    {"SUBC", 0x7000, 0xF000, MSP430Format::TwoOperand, MSP430Operation::Subc},
    {"SUB", 0x8000, 0xF000, MSP430Format::TwoOperand, MSP430Operation::Sub},
    {"CMP", 0x9000, 0xF000, MSP430Format::TwoOperand, MSP430Operation::Cmp},
    {"DADD", 0xA000, 0xF000, MSP430Format::TwoOperand, MSP430Operation::Dadd},
    {"BIT", 0xB000, 0xF000, MSP430Format::TwoOperand, MSP430Operation::Bit},
    {"BIC", 0xC000, 0xF000, MSP430Format::TwoOperand, MSP430Operation::Bic},
    {"BIS", 0xD000, 0xF000, MSP430Format::TwoOperand, MSP430Operation::Bis},
    {"XOR", 0xE000, 0xF000, MSP430Format::TwoOperand, MSP430Operation::Xor},
    {"AND", 0xF000, 0xF000, MSP430Format::TwoOperand, MSP430Operation::And},
    {"RRC", 0x1000, 0xFF80, MSP430Format::OneOperand, MSP430Operation::Rrc},
    {"SWPB", 0x1080, 0xFFC0, MSP430Format::OneOperand, MSP430Operation::Swpb},
    {"RRA", 0x1100, 0xFF80, MSP430Format::OneOperand, MSP430Operation::Rra},
    {"SXT", 0x1180, 0xFFC0, MSP430Format::OneOperand, MSP430Operation::Sxt},
    {"PUSH", 0x1200, 0xFF80, MSP430Format::OneOperand, MSP430Operation::Push},
    {"CALL", 0x1280, 0xFFC0, MSP430Format::OneOperand, MSP430Operation::Call},
    {"CALLA", 0x1340, 0xFFC0, MSP430Format::OneOperand, MSP430Operation::CallaSource},
    {"RETI", 0x1300, 0xFFC0, MSP430Format::NoOperand, MSP430Operation::Reti},
    {"CALLA", 0x1380, 0xFFF0, MSP430Format::CallAddress, MSP430Operation::CallaAbsolute},
    {"CALLA", 0x1390, 0xFFF0, MSP430Format::CallAddress, MSP430Operation::CallaRelative},
    {"CALLA", 0x13B0, 0xFFF0, MSP430Format::CallAddress, MSP430Operation::CallaImmediate},
    {"JNE", 0x2000, 0xFC00, MSP430Format::Jump, MSP430Operation::Jne},
    {"JEQ", 0x2400, 0xFC00, MSP430Format::Jump, MSP430Operation::Jeq},
    {"JNC", 0x2800, 0xFC00, MSP430Format::Jump, MSP430Operation::Jnc},
    {"JC", 0x2C00, 0xFC00, MSP430Format::Jump, MSP430Operation::Jc},
    {"JN", 0x3000, 0xFC00, MSP430Format::Jump, MSP430Operation::Jn},
    {"JGE", 0x3400, 0xFC00, MSP430Format::Jump, MSP430Operation::Jge},
    {"JL", 0x3800, 0xFC00, MSP430Format::Jump, MSP430Operation::Jl},
    {"JMP", 0x3C00, 0xFC00, MSP430Format::Jump, MSP430Operation::Jmp},
    {"PUSHM.A", 0x1400, 0xFF00, MSP430Format::Multiple, MSP430Operation::PushmA},
    {"PUSHM.W", 0x1500, 0xFF00, MSP430Format::Multiple, MSP430Operation::PushmW},
    {"POPM.A", 0x1600, 0xFF00, MSP430Format::Multiple, MSP430Operation::PopmA},
    {"POPM.W", 0x1700, 0xFF00, MSP430Format::Multiple, MSP430Operation::PopmW},
    {"RRCM.A", 0x0040, 0xF3F0, MSP430Format::Rotate, MSP430Operation::Rrcm},
    {"RRCM.W", 0x0050, 0xF3F0, MSP430Format::Rotate, MSP430Operation::Rrcm},
    {"RRAM.A", 0x0140, 0xF3F0, MSP430Format::Rotate, MSP430Operation::Rram},
    {"RRAM.W", 0x0150, 0xF3F0, MSP430Format::Rotate, MSP430Operation::Rram},
    {"RLAM.A", 0x0240, 0xF3F0, MSP430Format::Rotate, MSP430Operation::Rlam},
    {"RLAM.W", 0x0250, 0xF3F0, MSP430Format::Rotate, MSP430Operation::Rlam},
    {"RRUM.A", 0x0340, 0xF3F0, MSP430Format::Rotate, MSP430Operation::Rrum},
    {"RRUM.W", 0x0350, 0xF3F0, MSP430Format::Rotate, MSP430Operation::Rrum},
    {"MOVA", 0x0000, 0xF0F0, MSP430Format::AddressMove, MSP430Operation::MovaIndirect},
    {"MOVA", 0x0010, 0xF0F0, MSP430Format::AddressMove, MSP430Operation::MovaIncrement},
    {"MOVA", 0x0020, 0xF0F0, MSP430Format::AddressMove, MSP430Operation::MovaFromAbsolute},
    {"MOVA", 0x0030, 0xF0F0, MSP430Format::AddressMove, MSP430Operation::MovaFromIndexed},
    {"MOVA", 0x0060, 0xF0F0, MSP430Format::AddressMove, MSP430Operation::MovaToAbsolute},
    {"MOVA", 0x0070, 0xF0F0, MSP430Format::AddressMove, MSP430Operation::MovaToIndexed},
    {"MOVA", 0x0080, 0xF0F0, MSP430Format::AddressMove, MSP430Operation::MovaImmediate},
    {"CMPA", 0x0090, 0xF0F0, MSP430Format::AddressMove, MSP430Operation::CmpaImmediate},
    {"ADDA", 0x00A0, 0xF0F0, MSP430Format::AddressMove, MSP430Operation::AddaImmediate},
    {"SUBA", 0x00B0, 0xF0F0, MSP430Format::AddressMove, MSP430Operation::SubaImmediate},
    {"MOVA", 0x00C0, 0xF0F0, MSP430Format::AddressMove, MSP430Operation::Mova},
    {"CMPA", 0x00D0, 0xF0F0, MSP430Format::AddressMove, MSP430Operation::Cmpa},
    {"ADDA", 0x00E0, 0xF0F0, MSP430Format::AddressMove, MSP430Operation::Adda},
    {"SUBA", 0x00F0, 0xF0F0, MSP430Format::AddressMove, MSP430Operation::Suba},
});

/// The fixed bits of an operation's instruction word; of those with a 20-bit and a word form, the
/// 20-bit one's.
constexpr std::uint16_t msp430OpcodeOf(MSP430Operation operation)
{
    for (const MSP430Instruction& instruction : msp430Instructions)
        if (instruction.operation == operation)
            return instruction.opcode;
    return 0;
}

/// The instruction that `word` begins, or null for an extension word and an unassigned one.
const MSP430Instruction* findMSP430Instruction(std::uint16_t word);

/// Operations by bits 15..4 of the instruction word, which tell every instruction from the others.
extern const std::array<MSP430Operation, 4096> msp430Operations;

inline MSP430Operation msp430OperationOf(unsigned word)
{
    return msp430Operations[word >> 4 & 0xFFF];
}

/// Cycles of a two-operand instruction.
/// @param sourceMode 0 register or constant, 1 indexed, 2 indirect, 3 indirect with increment
inline unsigned msp430TwoOperandCycles(int sourceMode, bool destinationIsMemory,
                                       bool destinationIsPC)
{
    static constexpr std::uint8_t cycles[4][3] = {{1, 2, 4}, {3, 3, 6}, {2, 3, 5}, {2, 3, 5}};
    return cycles[sourceMode & 3][destinationIsMemory ? 2 : destinationIsPC ? 1 : 0];
}

/// Cycles of RRC, SWPB, RRA and SXT.
inline unsigned msp430ShiftCycles(int mode) { return mode == 0 ? 1 : mode == 1 ? 4 : 3; }

inline unsigned msp430PushCycles(int sourceMode)
{
    return sourceMode == 0 ? 3 : sourceMode == 1 ? 5 : 4;
}

inline unsigned msp430CallCycles(int sourceMode)
{
    return sourceMode == 0 || sourceMode == 2 ? 4 : 5;
}

inline constexpr unsigned msp430JumpCycles = 2;
inline constexpr unsigned msp430RetiCycles = 5;

/// Cycles of CALLA with a source operand in `mode`.
inline unsigned msp430CallaCycles(int mode) { return mode == 0 ? 4 : mode == 1 ? 6 : 5; }

inline unsigned msp430MultipleCycles(unsigned registers, bool address)
{
    return 2 + (address ? 2 * registers : registers);
}
