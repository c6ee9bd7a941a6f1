#pragma once

#include "target/msp430/MSP430InstructionSetSimulator.h"

#include <array>
#include <map>
#include <string>
#include <vector>

/// Sixteen registers and a sparse memory that takes anything anywhere, and notes what it was asked.
class FlatOwner : public MSP430InstructionSetSimulator {
public:
    unsigned getRegister(int number) override
    {
        return registers[static_cast<std::size_t>(number)];
    }
    void setRegister(int number, unsigned value) override
    {
        registers[static_cast<std::size_t>(number)] = value;
    }
    unsigned readByte(unsigned address) override
    {
        reads.push_back(address);
        return bytes[address];
    }
    void writeByte(unsigned address, unsigned value) override
    {
        bytes[address] = static_cast<unsigned char>(value);
    }
    unsigned readWord(unsigned address) override
    {
        reads.push_back(address);
        return word(address);
    }
    void writeWord(unsigned address, unsigned value) override { setWord(address, value); }
    void unsupportedOpcode(unsigned word) override { unsupported.push_back(word); }

    unsigned word(unsigned address)
    {
        return bytes[address] | static_cast<unsigned>(bytes[address + 1]) << 8;
    }
    void setWord(unsigned address, unsigned value)
    {
        bytes[address] = static_cast<unsigned char>(value);
        bytes[address + 1] = static_cast<unsigned char>(value >> 8);
    }

    std::array<unsigned, 16> registers{};
    std::map<unsigned, unsigned char> bytes;
    std::vector<unsigned> reads;
    std::vector<unsigned> unsupported;
};

/// One value of the machine: a register, a word or a byte of memory.
struct Cell {
    enum Kind { Register, Word, Byte } kind;
    unsigned index;
    unsigned value;
};
inline Cell R(unsigned number, unsigned value) { return {Cell::Register, number, value}; }
inline Cell W(unsigned address, unsigned value) { return {Cell::Word, address, value}; }
inline Cell B(unsigned address, unsigned value) { return {Cell::Byte, address, value}; }

inline constexpr unsigned PC = 0, SP = 1, SR = 2;
inline constexpr unsigned C = 1, Z = 2, N = 4, V = 0x100;

/// One instruction at 0x8000: the machine before, what has to hold after, and its cycles.
struct EngineCase {
    std::string name;
    std::vector<unsigned> words;
    std::vector<Cell> before;
    std::vector<Cell> after;
    unsigned cycles;
    bool extended = true;
};

void runEngineCase(const EngineCase& engineCase);
