#include "EngineCase.h"

#include <gtest/gtest.h>

void runEngineCase(const EngineCase& engineCase)
{
    SCOPED_TRACE(engineCase.name);
    FlatOwner owner;
    owner.setExtendedCore(engineCase.extended);
    owner.registers[PC] = 0x8000;
    owner.registers[SP] = 0x400;
    unsigned address = 0x8000;
    for (unsigned word : engineCase.words) {
        owner.setWord(address, word);
        address += 2;
    }
    for (const Cell& cell : engineCase.before) {
        if (cell.kind == Cell::Register)
            owner.registers[cell.index] = cell.value;
        else if (cell.kind == Cell::Word)
            owner.setWord(cell.index, cell.value);
        else
            owner.bytes[cell.index] = static_cast<unsigned char>(cell.value);
    }
    EXPECT_EQ(owner.singleStep(), engineCase.cycles) << "cycles";
    for (const Cell& cell : engineCase.after) {
        const unsigned value = cell.kind == Cell::Register ? owner.registers[cell.index]
            : cell.kind == Cell::Word                      ? owner.word(cell.index)
                                                           : owner.bytes[cell.index];
        EXPECT_EQ(value, cell.value) << std::hex << "cell " << cell.index << " holds 0x" << value;
    }
}
