#pragma once

#include <cstdint>
#include <string_view>

/// How a mnemonic's operands are written and what they become.
enum class AsmShape : std::uint8_t {
    TwoOperand,      ///< source, destination
    Constant,        ///< destination; the source is a constant
    Twice,           ///< destination, which is the source too
    Pop,             ///< destination; the source is @SP+
    Branch,          ///< source; the destination is the PC
    OneOperand,      ///< an operand that is read and written
    Push,            ///< an operand that is read
    RotateUnsigned,  ///< RRUX: RRC with the zero-carry bit of the extension word
    Call,            ///< an operand that is read; never extended
    Jump,            ///< a target
    Fixed,           ///< nothing
    Address,         ///< the 20-bit two-operand forms
    AddressConstant, ///< a register; the source is a constant
    AddressBranch,   ///< source; the destination is the PC
    AddressCall,     ///< CALLA
    PushMultiple,    ///< #count, first register
    PopMultiple,     ///< #count, last register
    RotateMultiple,  ///< #count, register
    Repeat,          ///< RPT: a count for the next instruction
};

/// Which size suffixes a mnemonic takes.
enum class AsmSizes : std::uint8_t { None, Word, ByteWord, WordAddress };

struct AsmMnemonic {
    std::string_view name; ///< lower case, without size
    AsmShape shape;
    std::uint16_t opcode; ///< the instruction word with its open bits clear
    AsmSizes sizes;
    std::int8_t constant;  ///< the source of the shapes that have a constant one
    bool extendable;       ///< takes an extension word under its name with an "x"
    bool needsX;           ///< is there on MSP430X only
    bool transfer = false; ///< of Fixed: nothing behind it is reached from it
};

/// The entry of a name in lower case, or null.
const AsmMnemonic* findMnemonic(std::string_view name);
