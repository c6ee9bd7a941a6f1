#pragma once

#include <cstdint>

enum class OperandSize { Byte, Word, Address };

/// Status register bits.
namespace MSP430Status {
inline constexpr unsigned C = 0x1, Z = 0x2, N = 0x4, GIE = 0x8, CPUOFF = 0x10, V = 0x100;
}

/// Numbers of the registers with a purpose of their own.
namespace MSP430Register {
inline constexpr int PC = 0, SP = 1, SR = 2, CG = 3;
}

/// The extension word in front of an MSP430X instruction. Its repeat count and zero-carry bit have
/// no effect here.
struct MSP430Extension {
    static constexpr bool present = true;
    unsigned word;
    bool notAddress() const { return (word & 0x40) != 0; }
    unsigned sourceHigh() const { return (word >> 7 & 0xF) << 16; }
    unsigned destinationHigh() const { return (word & 0xF) << 16; }
};

struct MSP430NoExtension {
    static constexpr bool present = false;
    bool notAddress() const { return true; }
    unsigned sourceHigh() const { return 0; }
    unsigned destinationHigh() const { return 0; }
};

/// Operand access of the instruction engine: addressing modes over the registers and memory of
/// `Owner`, the class that derives from this one and gives `getRegister`, `setRegister`,
/// `readByte`, `writeByte`, `readWord` and `writeWord`. Addresses are bytes; a word at an odd
/// address is passed through for the owner to refuse.
template <class Owner> class MSP430Operands {
public:
    static constexpr unsigned maskOf(OperandSize size)
    {
        return size == OperandSize::Byte ? 0xFFu : size == OperandSize::Word ? 0xFFFFu : 0xFFFFFu;
    }
    static constexpr unsigned signOf(OperandSize size) { return (maskOf(size) >> 1) + 1; }
    /// The value cut to the size.
    static constexpr unsigned maskOperand(OperandSize size, unsigned value)
    {
        return value & maskOf(size);
    }

    /// A 20-bit number in two words, low word first.
    unsigned readXWord(unsigned address)
    {
        const unsigned low = owner().readWord(address);
        return low | (owner().readWord(address + 2) & 0xF) << 16;
    }
    void writeXWord(unsigned address, unsigned value)
    {
        owner().writeWord(address, value & 0xFFFF);
        owner().writeWord(address + 2, value >> 16 & 0xF);
    }
    void loadPC(unsigned address) { setPC(owner().readWord(address)); }
    void storePC(unsigned address) { owner().writeWord(address, PC() & 0xFFFF); }
    /// Reads the word at the PC and moves the PC past it.
    unsigned Ifetch()
    {
        const unsigned pc = PC();
        const unsigned word = owner().readWord(pc);
        setPC(pc + 2);
        return word;
    }

protected:
    /// Address found by the last destination operand that is in memory.
    std::uint32_t m_destinationAddress = 0;
    std::int32_t m_destinationMode = 0;
    std::int32_t m_destinationRegister = 0;
    /// After the constant generator, so that a constant counts as a register.
    std::int32_t m_sourceMode = 0;
    std::int32_t m_sourceRegister = 0;
    /// True for an MSP430X core: addresses are 20 bits, otherwise 16.
    bool m_extendedCore = false;

    Owner& owner() { return static_cast<Owner&>(*this); }
    unsigned PC() { return owner().getRegister(MSP430Register::PC); }
    unsigned SP() { return owner().getRegister(MSP430Register::SP); }
    unsigned SR() { return owner().getRegister(MSP430Register::SR); }
    void setPC(unsigned value) { owner().setRegister(MSP430Register::PC, value); }
    void setSP(unsigned value) { owner().setRegister(MSP430Register::SP, value); }
    void setSR(unsigned value) { owner().setRegister(MSP430Register::SR, value); }

    unsigned cutAddress(unsigned address) const
    {
        return address & (m_extendedCore ? 0xFFFFFu : 0xFFFFu);
    }
    static unsigned signExtendWord(unsigned word)
    {
        return static_cast<unsigned>(static_cast<std::int16_t>(word));
    }

    [[gnu::always_inline]] unsigned readMemory(OperandSize size, unsigned address)
    {
        if (size == OperandSize::Word)
            return owner().readWord(address);
        return size == OperandSize::Byte ? owner().readByte(address) : readXWord(address);
    }

    template <class Extension>
    [[gnu::always_inline]] unsigned sourceOperand(int reg, int mode, OperandSize size,
                                                  Extension extension)
    {
        m_sourceRegister = reg;
        m_sourceMode = mode;
        if (reg == MSP430Register::CG || (reg == MSP430Register::SR && mode >= 2))
            return maskOperand(size, constant(reg, mode));
        if (mode == 0)
            return maskOperand(size, owner().getRegister(reg));
        if (mode == 3)
            return incrementOperand(reg, size, extension);
        const unsigned address = mode == 1 ? indexedAddress(reg, extension, extension.sourceHigh())
                                           : owner().getRegister(reg);
        return readMemory(size, cutAddress(address));
    }

    template <class Extension>
    [[gnu::always_inline]] unsigned destinationOperand(int reg, int mode, OperandSize size,
                                                       Extension extension)
    {
        m_destinationRegister = reg;
        m_destinationMode = mode;
        if (mode == 0)
            return maskOperand(size, owner().getRegister(reg));
        m_destinationAddress =
            cutAddress(indexedAddress(reg, extension, extension.destinationHigh()));
        return readMemory(size, m_destinationAddress);
    }

    /// Writes where the last destination operand was read.
    [[gnu::always_inline]] void writeBack(OperandSize size, unsigned value)
    {
        if (m_destinationMode == 0)
            owner().setRegister(m_destinationRegister, maskOperand(size, value));
        else
            writeMemory(size, m_destinationAddress, value);
    }

    [[gnu::always_inline]] void writeMemory(OperandSize size, unsigned address, unsigned value)
    {
        if (size == OperandSize::Word)
            owner().writeWord(address, value & 0xFFFF);
        else if (size == OperandSize::Byte)
            owner().writeByte(address, value & 0xFF);
        else
            writeXWord(address, value);
    }

private:
    unsigned constant(int reg, int mode)
    {
        m_sourceMode = 0;
        if (reg == MSP430Register::SR)
            return mode == 2 ? 4 : 8;
        return mode == 3 ? ~0u : static_cast<unsigned>(mode);
    }

    template <class Extension>
    [[gnu::always_inline]] unsigned incrementOperand(int reg, OperandSize size, Extension extension)
    {
        if (Extension::present && reg == MSP430Register::PC)
            return maskOperand(size, owner().Ifetch() | extension.sourceHigh());
        const unsigned address = owner().getRegister(reg);
        const bool word = reg == MSP430Register::PC || size == OperandSize::Word;
        owner().setRegister(reg, address + (word ? 2 : size == OperandSize::Byte ? 1 : 4));
        return readMemory(size, cutAddress(address + extension.sourceHigh()));
    }

    template <class Extension>
    [[gnu::always_inline]] unsigned indexedAddress(int reg, Extension, unsigned high)
    {
        const unsigned word = owner().Ifetch();
        const unsigned offset = Extension::present ? high | word : signExtendWord(word);
        // An absolute address of a plain instruction stays within the first 64 KB on every core.
        if (reg == MSP430Register::SR)
            return Extension::present ? offset : word;
        unsigned base = owner().getRegister(reg);
        if (reg == MSP430Register::PC)
            base -= 2;
        const bool wraps = !Extension::present && m_extendedCore && base <= 0xFFFF;
        return wraps ? (base + offset) & 0xFFFF : base + offset;
    }
};
