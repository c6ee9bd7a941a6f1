#pragma once

#include "EngineCase.h"

#include <set>

/// How many bytes of an instruction the simulator fetches.
struct InstructionLength {
    static constexpr unsigned Code = 0x8000;
    /// An extension word, an instruction, and two words behind it; what is there besides isn't
    /// fetched.
    static constexpr unsigned MostWords = 4;

    unsigned bytes = 0;
    bool supported = false;

    explicit InstructionLength(const std::vector<unsigned>& words, unsigned code = Code)
    {
        FlatOwner owner;
        owner.setExtendedCore(true);
        for (unsigned i = 1; i < 16; ++i)
            owner.registers[i] = 0x1000 + 0x100 * i;
        owner.registers[PC] = code;
        for (unsigned i = 0; i < words.size(); ++i)
            owner.setWord(code + 2 * i, words[i]);
        owner.singleStep();
        std::set<unsigned> fetched;
        for (const unsigned address : owner.reads)
            if (address >= code && address < code + 2 * MostWords + 2)
                fetched.insert(address & ~1u);
        bytes = 2 * unsigned(fetched.size());
        supported = owner.unsupported.empty();
    }

    /// Where the disassembler shows another length, as both are meant to:
    /// - RRC, RRA, SWPB and SXT, whose operand takes an offset in every mode but the register;
    /// - CALLA through R3 and through the PC, which the disassembler shows as constants.
    static bool isOther(unsigned word)
    {
        const unsigned mode = word >> 4 & 3, reg = word & 15;
        if (word >= 0x1000 && word < 0x1200)
            return mode >= 2 || (mode == 1 && reg == 3);
        const bool isCallAddress = word >= 0x1340 && word < 0x1380;
        return isCallAddress && (reg == 3 || reg == 0);
    }

    /// Reads the word behind the instruction as its operand, without stepping over it.
    static bool readsAtThePC(unsigned word)
    {
        if (word < 0x1000)
            return (word & 0x0FF0) <= 0x0010;
        return word >= 0x4000 ? (word & 0x0F30) == 0x0020
                              : word >= 0x1200 && word < 0x1300 && (word & 0x3F) == 0x20;
    }
};
