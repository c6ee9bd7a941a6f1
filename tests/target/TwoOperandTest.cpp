#include "EngineCase.h"

#include <gtest/gtest.h>

namespace {

// Words: opcode, source register, Ad/BW/As, destination register.
const std::vector<EngineCase> results = {
    {"MOV leaves the flags", {0x4506}, {R(5, 0x8000), R(SR, C | Z | V)}, {R(6, 0x8000), R(SR, C | Z | V)}, 1},
    {"MOV.B clears the bits above", {0x4546}, {R(5, 0x12345), R(6, 0xFFFFF)}, {R(6, 0x45)}, 1},
    {"MOV word clears bits 19 to 16", {0x4506}, {R(5, 0xABCDE), R(6, 0xFFFFF)}, {R(6, 0xBCDE)}, 1},
    {"ADD carry and zero", {0x5506}, {R(5, 0xFFFF), R(6, 1)}, {R(6, 0), R(SR, C | Z)}, 1},
    {"ADD overflow to negative", {0x5506}, {R(5, 0x7FFF), R(6, 1)}, {R(6, 0x8000), R(SR, N | V)}, 1},
    {"ADD overflow to positive", {0x5506}, {R(5, 0x8000), R(6, 0x8000)}, {R(6, 0), R(SR, C | Z | V)}, 1},
    {"ADD.B wraps at 8 bits", {0x5546}, {R(5, 0xFF), R(6, 0x1201)}, {R(6, 0), R(SR, C | Z)}, 1},
    {"ADDC adds the carry", {0x6506}, {R(5, 1), R(6, 2), R(SR, C)}, {R(6, 4), R(SR, 0)}, 1},
    {"ADDC without carry", {0x6506}, {R(5, 1), R(6, 2)}, {R(6, 3), R(SR, 0)}, 1},
    {"SUB without borrow", {0x8506}, {R(5, 3), R(6, 5)}, {R(6, 2), R(SR, C)}, 1},
    {"SUB with borrow", {0x8506}, {R(5, 5), R(6, 3)}, {R(6, 0xFFFE), R(SR, N)}, 1},
    {"SUB to zero", {0x8506}, {R(5, 5), R(6, 5)}, {R(6, 0), R(SR, C | Z)}, 1},
    {"SUB overflows: negative less positive", {0x8506}, {R(5, 1), R(6, 0x8000)}, {R(6, 0x7FFF), R(SR, C | V)}, 1},
    {"SUB overflows: positive less negative", {0x8506}, {R(5, 0xFFFF), R(6, 0x7FFF)}, {R(6, 0x8000), R(SR, N | V)}, 1},
    {"SUBC borrows where C is clear", {0x7506}, {R(5, 1), R(6, 5)}, {R(6, 3), R(SR, C)}, 1},
    {"SUBC with C set is SUB", {0x7506}, {R(5, 1), R(6, 5), R(SR, C)}, {R(6, 4), R(SR, C)}, 1},
    {"CMP writes nothing", {0x9506}, {R(5, 5), R(6, 5)}, {R(6, 5), R(SR, C | Z)}, 1},
    {"CMP.B looks at bytes", {0x9546}, {R(5, 0x1205), R(6, 0x3405)}, {R(6, 0x3405), R(SR, C | Z)}, 1},
    {"BIT sets C where Z is clear, clears V", {0xB506}, {R(5, 0x8001), R(6, 0x8000), R(SR, V)}, {R(6, 0x8000), R(SR, C | N)}, 1},
    {"BIT to zero", {0xB506}, {R(5, 1), R(6, 2), R(SR, C | V)}, {R(6, 2), R(SR, Z)}, 1},
    {"BIC leaves the flags", {0xC506}, {R(5, 0x0F), R(6, 0xFF), R(SR, C | N)}, {R(6, 0xF0), R(SR, C | N)}, 1},
    {"BIS leaves the flags", {0xD506}, {R(5, 0x0F), R(6, 0xF0), R(SR, Z)}, {R(6, 0xFF), R(SR, Z)}, 1},
    {"XOR of two negatives sets V", {0xE506}, {R(5, 0x8000), R(6, 0x8001)}, {R(6, 1), R(SR, C | V)}, 1},
    {"XOR to zero", {0xE506}, {R(5, 0x1234), R(6, 0x1234)}, {R(6, 0), R(SR, Z)}, 1},
    {"AND negative", {0xF506}, {R(5, 0xFFFF), R(6, 0x8000), R(SR, V)}, {R(6, 0x8000), R(SR, C | N)}, 1},
    {"AND.B to zero", {0xF546}, {R(5, 0xF0), R(6, 0xFF0F)}, {R(6, 0), R(SR, Z)}, 1},
    {"DADD of four digits with carry in", {0xA506}, {R(5, 0x1999), R(6, 0x0001), R(SR, C)}, {R(6, 0x2001), R(SR, 0)}, 1},
    {"DADD carries out of 9999", {0xA506}, {R(5, 0x9999), R(6, 1)}, {R(6, 0), R(SR, C)}, 1},
    {"DADD.B of 99 and 1: the sum is 100, not 0", {0xA546}, {R(5, 0x99), R(6, 1)}, {R(6, 0), R(SR, C)}, 1},
    {"DADD of zeros", {0xA506}, {R(SR, N | V)}, {R(6, 0), R(SR, Z | V)}, 1},
    {"DADD negative digits leave V", {0xA506}, {R(5, 0x4000), R(6, 0x4000), R(SR, V)}, {R(6, 0x8000), R(SR, N | V)}, 1},
    {"the written SR comes before the flags", {0x5502}, {R(5, 0x18), R(SR, 0)}, {R(SR, 0x18)}, 1},
};

const std::vector<EngineCase> modes = {
    {"constants 0, 1, 2, -1, 4, 8: 0", {0x4306}, {R(6, 7)}, {R(6, 0)}, 1},
    {"1", {0x4316}, {}, {R(6, 1)}, 1},
    {"2", {0x4326}, {}, {R(6, 2)}, 1},
    {"-1 as word", {0x4336}, {}, {R(6, 0xFFFF)}, 1},
    {"-1 as byte", {0x4376}, {}, {R(6, 0xFF)}, 1},
    {"4", {0x4226}, {}, {R(6, 4)}, 1},
    {"8", {0x4236}, {}, {R(6, 8)}, 1},
    {"a constant to memory costs a register source", {0x4392, 0x0200}, {}, {W(0x200, 1)}, 4},
    {"SR as register", {0x4206}, {R(SR, 5)}, {R(6, 5)}, 1},
    {"x(R5) to register", {0x4516, 0x0004}, {R(5, 0x200), W(0x204, 0xBEEF)}, {R(6, 0xBEEF), R(PC, 0x8004)}, 3},
    {"negative offset", {0x4516, 0xFFFE}, {R(5, 0x202), W(0x200, 0xBEEF)}, {R(6, 0xBEEF)}, 3},
    {"symbolic source", {0x4016, 0x0010}, {W(0x8012, 0xBEEF)}, {R(6, 0xBEEF)}, 3},
    {"absolute source above 32 KB", {0x4216, 0xC000}, {W(0xC000, 0xBEEF)}, {R(6, 0xBEEF)}, 3},
    {"@R5", {0x4526}, {R(5, 0x200), W(0x200, 0xBEEF)}, {R(5, 0x200), R(6, 0xBEEF)}, 2},
    {"@R5+ word", {0x4536}, {R(5, 0x200), W(0x200, 0xBEEF)}, {R(5, 0x202), R(6, 0xBEEF)}, 2},
    {"@R5+ byte", {0x4576}, {R(5, 0x200), B(0x200, 0xEF)}, {R(5, 0x201), R(6, 0xEF)}, 2},
    {"immediate", {0x4036, 0x1234}, {}, {R(6, 0x1234), R(PC, 0x8004)}, 2},
    {"immediate byte still takes a word", {0x4076, 0x1234}, {}, {R(6, 0x34), R(PC, 0x8004)}, 2},
    {"register to x(R6)", {0x4586, 0x0002}, {R(5, 0xBEEF), R(6, 0x200)}, {W(0x202, 0xBEEF)}, 4},
    {"register to symbolic", {0x4580, 0x0010}, {R(5, 0xBEEF)}, {W(0x8012, 0xBEEF)}, 4},
    {"symbolic to absolute: each base is its own word", {0x4092, 0x0010, 0x0200}, {W(0x8012, 0xBEEF)}, {W(0x200, 0xBEEF)}, 6},
    {"@R5 to absolute", {0x45A2, 0x0200}, {R(5, 0x300), W(0x300, 0xBEEF)}, {W(0x200, 0xBEEF)}, 5},
    {"immediate to absolute", {0x40B2, 0x1234, 0x0200}, {}, {W(0x200, 0x1234), R(PC, 0x8006)}, 5},
    {"byte to memory leaves its neighbour", {0x45C2, 0x0200}, {R(5, 0x12), W(0x200, 0xAAAA)}, {W(0x200, 0xAA12)}, 4},
    {"the source grows before the destination is found", {0x45B5, 0x0000}, {R(5, 0x200), W(0x200, 0xBEEF)}, {R(5, 0x202), W(0x202, 0xBEEF)}, 5},
    {"register to PC", {0x4500}, {R(5, 0x9000)}, {R(PC, 0x9000)}, 2},
    {"x(R5) to PC", {0x4510, 0}, {R(5, 0x200), W(0x200, 0x9000)}, {R(PC, 0x9000)}, 3},
    {"@R5+ to PC", {0x4530}, {R(5, 0x200), W(0x200, 0x9000)}, {R(PC, 0x9000)}, 3},
    {"ADD to PC counts from behind the word", {0x5520}, {R(5, 0x200), W(0x200, 4)}, {R(PC, 0x8006)}, 3},
    {"without an extended core indexing wraps at 16 bits", {0x4516, 0x0010}, {R(5, 0xFFF8), W(8, 0xBEEF)}, {R(6, 0xBEEF)}, 3, false},
    {"with one it wraps for a base in the first 64 KB", {0x4516, 0x0010}, {R(5, 0xFFF8), W(8, 0xBEEF)}, {R(6, 0xBEEF)}, 3},
    {"and not for one above", {0x4516, 0x0010}, {R(5, 0x1FFF8), W(0x20008, 0xBEEF)}, {R(6, 0xBEEF)}, 3},
    {"a 20-bit pointer", {0x4526}, {R(5, 0x20008), W(0x20008, 0xBEEF)}, {R(6, 0xBEEF)}, 2},
    {"is cut without an extended core", {0x4526}, {R(5, 0x20008), W(8, 0xBEEF)}, {R(6, 0xBEEF)}, 2, false},
};

// Extension words: 0x1800, source high bits 10 to 7, A/L bit 6, destination high bits 3 to 0.
const std::vector<EngineCase> extensions = {
    {"MOVX.A register", {0x1800, 0x4546}, {R(5, 0xABCDE)}, {R(6, 0xABCDE)}, 1},
    {"MOVX.W register", {0x1840, 0x4506}, {R(5, 0xABCDE)}, {R(6, 0xBCDE)}, 1},
    {"MOVX.B register", {0x1840, 0x4546}, {R(5, 0xABCDE)}, {R(6, 0xDE)}, 1},
    {"A/L and byte bit clear is a byte", {0x1800, 0x4506}, {R(5, 0xABCDE)}, {R(6, 0xDE)}, 1},
    {"MOVX.A immediate", {0x1800 | 0xA << 7, 0x4076, 0xBCDE}, {}, {R(6, 0xABCDE), R(PC, 0x8006)}, 2},
    {"MOVX.W immediate is cut", {0x1840 | 0xA << 7, 0x4036, 0xBCDE}, {}, {R(6, 0xBCDE)}, 2},
    {"MOVX.A from &abs20", {0x1800 | 1 << 7, 0x4256, 0x0200}, {W(0x10200, 0xBCDE), W(0x10202, 0xFFFA)}, {R(6, 0xABCDE)}, 3},
    {"MOVX.A to x(R6): two words, four bits in the second", {0x1800 | 1, 0x45C6, 0x0200}, {R(5, 0xABCDE), R(6, 2)}, {W(0x10202, 0xBCDE), W(0x10204, 0x000A)}, 4},
    {"an extended offset is not sign-extended", {0x1840, 0x4516, 0xFFFE}, {R(5, 4), W(0x10002, 0xBEEF)}, {R(6, 0xBEEF)}, 3},
    {"@R5+ of an address grows by 4", {0x1800, 0x4576}, {R(5, 0x200), W(0x200, 0xBCDE), W(0x202, 0x000A)}, {R(5, 0x204), R(6, 0xABCDE)}, 2},
    {"ADDX.A carries out of bit 19", {0x1800, 0x5546}, {R(5, 0xFFFFF), R(6, 1)}, {R(6, 0), R(SR, C | Z)}, 1},
    {"SUBX.A sign is bit 19", {0x1800, 0x8546}, {R(5, 1), R(6, 0)}, {R(6, 0xFFFFF), R(SR, N)}, 1},
    {"a repeat count does nothing", {0x1843, 0x5506}, {R(5, 1), R(6, 0)}, {R(6, 1)}, 1},
    {"DADDX.A has four digits", {0x1800, 0xA546}, {R(5, 0x19999), R(6, 1)}, {R(6, 0), R(SR, 0)}, 1},
    {"PUSHX.A", {0x1800, 0x1245}, {R(5, 0xABCDE)}, {R(SP, 0x3FC), W(0x3FC, 0xBCDE), W(0x3FE, 0xA)}, 3},
    {"RRAX.A keeps bit 19", {0x1800, 0x1145}, {R(5, 0x80001)}, {R(5, 0xC0000), R(SR, C | N)}, 1},
    {"two extension words: nothing, and no cycles", {0x1800, 0x1800}, {}, {R(PC, 0x8004)}, 0},
};

} // namespace

TEST(TwoOperand, Results)
{
    for (const EngineCase& engineCase : results)
        runEngineCase(engineCase);
}

TEST(TwoOperand, AddressingModesAndCycles)
{
    for (const EngineCase& engineCase : modes)
        runEngineCase(engineCase);
}

TEST(TwoOperand, ExtensionWords)
{
    for (const EngineCase& engineCase : extensions)
        runEngineCase(engineCase);
}

TEST(TwoOperand, MovReadsItsDestinationAndConstantsReadNothing)
{
    FlatOwner owner;
    owner.registers[PC] = 0x8000;
    owner.setWord(0x8000, 0x4392);
    owner.setWord(0x8002, 0x0200);
    owner.singleStep();
    EXPECT_EQ(owner.reads, (std::vector<unsigned>{0x8000, 0x8002, 0x200}));
}
