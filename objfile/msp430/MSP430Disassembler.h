#pragma once

#include <functional>
#include <string>

/// One instruction as the disassembler shows it.
struct MSP430DisassemblyLine {
    /// The words in hexadecimal, in memory order, at column 0; the mnemonic at 20; operands at 30.
    std::string text;
    unsigned length = 0; ///< in bytes
    bool isTransfer = false;
    /// Where a transfer goes, as far as the instruction itself tells; 0 if it doesn't.
    unsigned target = 0;
};

/// Turns MSP430 and MSP430X machine code into text, one instruction at a time. It never fails: what
/// is no instruction shows as question marks.
class MSP430Disassembler {
public:
    /// Gives the 16-bit little-endian word at an address.
    using WordReader = std::function<unsigned(unsigned address)>;

    explicit MSP430Disassembler(WordReader readWord) : m_readWord(std::move(readWord)) { }

    MSP430DisassemblyLine disassemble(unsigned address) const;

private:
    WordReader m_readWord;
};
