#include "EngineCase.h"

#include "objfile/msp430/MSP430Instructions.h"

#include <gtest/gtest.h>

namespace {

const std::vector<EngineCase> single = {
    {"RRC takes C in and out", {0x1005}, {R(5, 0x8001), R(SR, C)}, {R(5, 0xC000), R(SR, C | N)}, 1},
    {"RRC sets V where a clear top bit gets C",
     {0x1005},
     {R(5, 0x0002), R(SR, C)},
     {R(5, 0x8001), R(SR, N | V)},
     1},
    {"RRC.B", {0x1045}, {R(5, 0xFF01)}, {R(5, 0), R(SR, C | Z)}, 1},
    {"RRC x(R5)", {0x1015, 0x0002}, {R(5, 0x200), W(0x202, 0x0004)}, {W(0x202, 2), R(SR, 0)}, 4},
    {"RRA keeps the sign, clears V",
     {0x1105},
     {R(5, 0x8003), R(SR, V)},
     {R(5, 0xC001), R(SR, C | N)},
     1},
    {"RRA.B", {0x1145}, {R(5, 0x81)}, {R(5, 0xC0), R(SR, C | N)}, 1},
    {"SWPB leaves the flags",
     {0x1085},
     {R(5, 0x1234), R(SR, C | V)},
     {R(5, 0x3412), R(SR, C | V)},
     1},
    {"SXT negative", {0x1185}, {R(5, 0x1280), R(SR, V)}, {R(5, 0xFF80), R(SR, C | N)}, 1},
    {"SXT zero", {0x1185}, {R(5, 0xFF00)}, {R(5, 0), R(SR, Z)}, 1},
    {"PUSH register", {0x1205}, {R(5, 0xBEEF)}, {R(SP, 0x3FE), W(0x3FE, 0xBEEF)}, 3},
    {"PUSH of SP sees the lowered value", {0x1201}, {}, {W(0x3FE, 0x3FE)}, 3},
    {"PUSH immediate", {0x1230, 0x1234}, {}, {W(0x3FE, 0x1234)}, 4},
    {"PUSH constant", {0x1233}, {}, {W(0x3FE, 0xFFFF)}, 3},
    {"PUSH x(R5)", {0x1215, 0}, {R(5, 0x200), W(0x200, 7)}, {W(0x3FE, 7)}, 5},
    {"PUSH.B writes one byte",
     {0x1245},
     {R(5, 0x1234), W(0x3FE, 0xAAAA)},
     {R(SP, 0x3FE), W(0x3FE, 0xAA34)},
     3},
    {"CALL immediate", {0x12B0, 0x9000}, {}, {R(PC, 0x9000), R(SP, 0x3FE), W(0x3FE, 0x8004)}, 5},
    {"CALL register", {0x1285}, {R(5, 0x9000)}, {R(PC, 0x9000), W(0x3FE, 0x8002)}, 4},
    {"CALL @R5", {0x12A5}, {R(5, 0x200), W(0x200, 0x9000)}, {R(PC, 0x9000)}, 4},
    {"CALL x(R5)",
     {0x1295, 0},
     {R(5, 0x200), W(0x200, 0x9000)},
     {R(PC, 0x9000), W(0x3FE, 0x8004)},
     5},
    {"RETI takes the PC as a word",
     {0x1300},
     {W(0x400, 0x0105), W(0x402, 0x9000)},
     {R(SR, 0x105), R(PC, 0x9000), R(SP, 0x404)},
     5},
};

struct Jump {
    unsigned opcode;
    unsigned takenWith;
    unsigned notTakenWith;
};
const Jump jumps[] = {
    {0x2000, 0, Z}, {0x2400, Z, 0},     {0x2800, 0, C}, {0x2C00, C, 0},     {0x3000, N, 0},
    {0x3400, 0, N}, {0x3400, N | V, V}, {0x3800, N, 0}, {0x3800, V, N | V},
};

const std::vector<EngineCase> extended = {
    {"MOVA @R5,R6",
     {0x0506},
     {R(5, 0x200), W(0x200, 0xBCDE), W(0x202, 0xFFFA)},
     {R(6, 0xABCDE)},
     3},
    {"MOVA @R5+,R6",
     {0x0516},
     {R(5, 0x200), W(0x200, 0xBCDE), W(0x202, 0xA)},
     {R(6, 0xABCDE), R(5, 0x204)},
     3},
    {"MOVA &abs20,R6", {0x0126, 0x0200}, {W(0x10200, 0xBCDE), W(0x10202, 0xA)}, {R(6, 0xABCDE)}, 4},
    {"MOVA x(R5),R6",
     {0x0536, 0xFFFE},
     {R(5, 0x10202), W(0x10200, 0xBCDE), W(0x10202, 0xA)},
     {R(6, 0xABCDE)},
     4},
    {"MOVA R5,&abs20 has its high bits at the other end",
     {0x0561, 0x0200},
     {R(5, 0xABCDE)},
     {W(0x10200, 0xBCDE), W(0x10202, 0xA)},
     4},
    {"MOVA R5,x(R6)",
     {0x0576, 0x0004},
     {R(5, 0xABCDE), R(6, 0x10200)},
     {W(0x10204, 0xBCDE), W(0x10206, 0xA)},
     4},
    {"MOVA #imm20,R6", {0x0A86, 0xBCDE}, {}, {R(6, 0xABCDE)}, 2},
    {"MOVA #imm20,PC", {0x0180, 0x9000}, {}, {R(PC, 0x19000)}, 3},
    {"MOVA R5,R6 leaves the flags",
     {0x05C6},
     {R(5, 0xABCDE), R(SR, Z)},
     {R(6, 0xABCDE), R(SR, Z)},
     1},
    {"ADDA", {0x05E6}, {R(5, 0x10000), R(6, 0x0FFFF)}, {R(6, 0x1FFFF), R(SR, 0)}, 1},
    {"ADDA of -1 and 1: zero, and no carry",
     {0x00A6, 0x0001},
     {R(6, 0xFFFFF)},
     {R(6, 0), R(SR, Z)},
     3},
    {"ADDA to negative has bit 20 of the 32-bit sum",
     {0x05E6},
     {R(5, 0xFFFFE), R(6, 1)},
     {R(6, 0xFFFFF), R(SR, C | N)},
     1},
    {"SUBA", {0x05F6}, {R(5, 1), R(6, 3)}, {R(6, 2), R(SR, 0)}, 1},
    {"SUBA below zero", {0x00B6, 0x0003}, {R(6, 1)}, {R(6, 0xFFFFE), R(SR, C | N)}, 3},
    {"CMPA writes nothing", {0x05D6}, {R(5, 3), R(6, 3)}, {R(6, 3), R(SR, Z)}, 1},
    {"CMPA #imm20", {0x0F96, 0xFFFF}, {R(6, 0xFFFFF)}, {R(6, 0xFFFFF), R(SR, Z)}, 3},
    {"RRCM.A #2", {0x0445}, {R(5, 0x00002), R(SR, C)}, {R(5, 0x40000), R(SR, C)}, 2},
    {"RRAM.W #1", {0x0155}, {R(5, 0xF8001)}, {R(5, 0xC000), R(SR, C | N)}, 1},
    {"RLAM.A #4", {0x0E45}, {R(5, 0x1000F)}, {R(5, 0x000F0), R(SR, C)}, 4},
    {"RRUM.W #3 leaves V", {0x0B55}, {R(5, 0x8004), R(SR, V)}, {R(5, 0x1000), R(SR, C | V)}, 3},
    {"PUSHM.A #2",
     {0x1416},
     {R(6, 0xABCDE), R(5, 0x12345)},
     {R(SP, 0x3F8), W(0x3FC, 0xBCDE), W(0x3FE, 0xA), W(0x3F8, 0x2345), W(0x3FA, 1)},
     6},
    {"PUSHM.W #2",
     {0x1516},
     {R(6, 0x1111), R(5, 0x2222)},
     {R(SP, 0x3FC), W(0x3FE, 0x1111), W(0x3FC, 0x2222)},
     4},
    {"POPM.A #2",
     {0x1615},
     {W(0x400, 0x2345), W(0x402, 1), W(0x404, 0xBCDE), W(0x406, 0xA)},
     {R(5, 0x12345), R(6, 0xABCDE), R(SP, 0x408)},
     6},
    {"POPM.W #2",
     {0x1715},
     {W(0x400, 0x2222), W(0x402, 0x1111)},
     {R(5, 0x2222), R(6, 0x1111), R(SP, 0x404)},
     4},
    {"CALLA R5",
     {0x1345},
     {R(5, 0x12344)},
     {R(PC, 0x12344), R(SP, 0x3FC), W(0x3FC, 0x8002), W(0x3FE, 0)},
     4},
    {"CALLA x(R5)",
     {0x1355, 2},
     {R(5, 0x200), W(0x202, 0x2344), W(0x204, 1)},
     {R(PC, 0x12344), W(0x3FC, 0x8004)},
     6},
    {"CALLA @R5", {0x1365}, {R(5, 0x200), W(0x200, 0x2344), W(0x202, 1)}, {R(PC, 0x12344)}, 5},
    {"CALLA @R5+",
     {0x1375},
     {R(5, 0x200), W(0x200, 0x2344), W(0x202, 1)},
     {R(PC, 0x12344), R(5, 0x204)},
     5},
    {"CALLA &abs20", {0x1381, 0x0200}, {W(0x10200, 0x2344), W(0x10202, 1)}, {R(PC, 0x12344)}, 6},
    {"CALLA x(PC) counts from its offset word",
     {0x1390, 0x0010},
     {W(0x8012, 0x2344), W(0x8014, 1)},
     {R(PC, 0x12344)},
     6},
    {"CALLA #imm20", {0x13B1, 0x2344}, {}, {R(PC, 0x12344), W(0x3FC, 0x8004)}, 4},
};

} // namespace

TEST(SingleOperand, ResultsAndCycles)
{
    for (const EngineCase& engineCase : single)
        runEngineCase(engineCase);
}

TEST(ExtendedInstructions, ResultsAndCycles)
{
    for (const EngineCase& engineCase : extended)
        runEngineCase(engineCase);
}

TEST(Jumps, ConditionsAndOffsets)
{
    for (const Jump& jump : jumps) {
        const std::string name =
            findMSP430Instruction(static_cast<std::uint16_t>(jump.opcode))->mnemonic;
        runEngineCase(
            {name + " taken", {jump.opcode | 4}, {R(SR, jump.takenWith)}, {R(PC, 0x800A)}, 2});
        runEngineCase({name + " not taken",
                       {jump.opcode | 4},
                       {R(SR, jump.notTakenWith)},
                       {R(PC, 0x8002)},
                       2});
    }
    runEngineCase({"JMP -1 stays", {0x3FFF}, {}, {R(PC, 0x8000)}, 2});
    runEngineCase({"JMP farthest back", {0x3E00}, {}, {R(PC, 0x8002 - 1024)}, 2});
    runEngineCase({"JMP farthest on", {0x3DFF}, {}, {R(PC, 0x8002 + 1022)}, 2});
}

TEST(Unsupported, IsReportedWithItsWordAndCostsNothing)
{
    for (unsigned word : {0x10C5u, 0x11C5u, 0x12C5u, 0x13C5u, 0x13A5u}) {
        FlatOwner owner;
        owner.registers[PC] = 0x8000;
        owner.setWord(0x8000, word);
        EXPECT_EQ(owner.singleStep(), 0u);
        EXPECT_EQ(owner.unsupported, std::vector<unsigned>{word});
        EXPECT_EQ(owner.registers[PC], 0x8002u);
    }
}

TEST(InstructionTable, EveryWordDecodesToTheInstructionThatClaimsIt)
{
    for (unsigned word = 0; word <= 0xFFFF; ++word) {
        const MSP430Instruction* found = findMSP430Instruction(static_cast<std::uint16_t>(word));
        const MSP430Operation operation = msp430OperationOf(word);
        if (word >= 0x1800 && word < 0x2000)
            ASSERT_EQ(operation, MSP430Operation::Extension);
        else
            ASSERT_EQ(operation, found ? found->operation : MSP430Operation::Unsupported)
                << std::hex << word;
    }
}
