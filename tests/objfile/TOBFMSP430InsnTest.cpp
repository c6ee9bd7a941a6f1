#include "objfile/msp430/TOBFMSP430Insn.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFSection.h"
#include "objfile/model/TOBFSymbol.h"

#include <gtest/gtest.h>

namespace {

TOBFExpr* number(std::int64_t value) { return new TOBFConstExpr(value); }
TOBFExpr* symbol(const char* name)
{
    return new TOBFSymbolExpr(new TOBFSymbol(HString::intern(name)));
}

class MSP430Insn : public testing::Test {
protected:
    void TearDown() override { g_msp430x = false; }

    Pool m_pool;
    CurrentPool m_current{&m_pool};
};

std::string encoded(std::uint32_t opcode, TOBFExpr* first, TOBFExpr* second, long pc)
{
    TOBFMSP430Insn insn(opcode, first, second, false);
    insn.setPC(pc);
    insn.encode();
    return insn.printOpCode();
}

TEST_F(MSP430Insn, ImmediatesTakeTheConstantGenerator)
{
    const struct {
        std::uint32_t opcode;
        std::int64_t value;
        std::uint32_t result;
    } cases[] = {
        {0x4035, 0, 0x4305},
        {0x4035, 1, 0x4315},
        {0x4035, 2, 0x4325},
        {0x4035, 4, 0x4225},
        {0x4035, 8, 0x4235},
        {0x4035, -1, 0x4335},
        {0x4035, 0xFFFF, 0x4335},
        {0x4035, 3, 0x4035},
        {0x4075, 0xFF, 0x4375},
        {0x4075, 0x100, 0x4345},
        {0x4035, 0xFF, 0x4035},
        {0x18404075, 0xFFFF, 0x18404375},  // .B with an extension word
        {0x18404035, 0xFFFF, 0x18404335},  // .W
        {0x18004075, 0xFFFFF, 0x18004375}, // .A
        {0x18004075, 0xFFFF, 0x18004075},
        {0x1230, 0, 0x1203},
        {0x1230, 1, 0x1213},
        {0x1230, 2, 0x1223},
        {0x1230, -1, 0x1233},
        {0x1230, 4, 0x1230},
        {0x1230, 8, 0x1230}, // left alone on the original core
    };
    for (const auto& it : cases) {
        const TOBFMSP430Insn insn(it.opcode, number(it.value), nullptr, true);
        EXPECT_EQ(insn.opcode(), it.result) << std::hex << it.opcode << " #" << it.value;
        EXPECT_EQ(insn.operand(0) == nullptr, it.opcode != it.result);
    }
    g_msp430x = true;
    EXPECT_EQ(TOBFMSP430Insn(0x1230, number(4), nullptr, true).opcode(), 0x1222u);
    EXPECT_EQ(TOBFMSP430Insn(0x1230, number(8), nullptr, true).opcode(), 0x1232u);
}

TEST_F(MSP430Insn, ConstantsOfSymbolsAndPushesOfTheStackTop)
{
    const TOBFMSP430Insn unknown(0x4035, symbol("later"), nullptr, true);
    EXPECT_EQ(unknown.opcode(), 0x4035u);
    const TOBFMSP430Insn push(0x1221, nullptr, nullptr, true);
    EXPECT_EQ(push.opcode(), 0x1211u);
    EXPECT_EQ(push.operand(0)->evaluate().value, 0);
    EXPECT_EQ(TOBFMSP430Insn(0x1221, nullptr, nullptr, false).opcode(), 0x1221u);
}

TEST_F(MSP430Insn, Lengths)
{
    const struct {
        std::uint32_t opcode;
        int operands, length;
    } cases[] = {
        {0x4506, 0, 2},     {0x4036, 1, 4},     {0x40B2, 2, 6},     {0x2000, 1, 2}, {0x1300, 0, 2},
        {0x18404506, 0, 4}, {0x180040F2, 2, 8}, {0x00800080, 1, 6}, {0x12B0, 1, 4}, {0x0080, 1, 4},
    };
    for (const auto& it : cases) {
        TOBFMSP430Insn insn(it.opcode, it.operands > 0 ? number(5) : nullptr,
                            it.operands > 1 ? number(6) : nullptr, false);
        EXPECT_EQ(insn.length(), it.length) << std::hex << it.opcode;
    }
}

TEST_F(MSP430Insn, Encodings)
{
    const struct {
        std::uint32_t opcode;
        TOBFExpr *first, *second;
        long pc;
        const char* bytes;
    } cases[] = {
        {0x4506, nullptr, nullptr, 0x1000, "0645"},
        {0x40B2, number(0x1234), number(0x0120), 0x1000, "B24034122001"},
        // Symbolic addresses count from their own word.
        {0x4016, number(0x1100), nullptr, 0x1000, "1640FE00"},
        {0x4590, nullptr, number(0x1100), 0x1000, "9045FE00"},
        {0x4090, number(0x1100), number(0x1100), 0x1000, "9040FE00FC00"},
        {0x1010, number(0x1100), nullptr, 0x1000, "1010FE00"},
        {0x12B0, number(0x4400), nullptr, 0x1000, "B0120044"},
        {0x3C00, number(0x1000), nullptr, 0x1000, "FF3F"},
        {0x2000, number(0x1400), nullptr, 0x1000, "FF21"},
        {0x2005, nullptr, nullptr, 0x1000, "0520"},
        {0x1380, number(0x12345), nullptr, 0x1000, "81134523"},
        {0x13B0, number(0x54321), nullptr, 0x1000, "B5132143"},
        {0x1390, number(0x12345), nullptr, 0x1000, "91134313"},
        {0x0020, number(0x12345), nullptr, 0x1000, "20014523"},
        {0x0085, number(0x12345), nullptr, 0x1000, "85014523"},
        {0x0095, nullptr, number(0x12345), 0x1000, "95014523"},
        {0x0560, number(0x12345), nullptr, 0x1000, "61054523"},
        {0x0530, number(0x12345), nullptr, 0x1000, "30054523"},
        {0x0570, number(-2), nullptr, 0x1000, "7005FEFF"},
        {0x05C6, nullptr, nullptr, 0x1000, "C605"},
        {0x180040F2, number(0x12345), number(0x6789A), 0x1000, "8618F24045239A78"},
        {0x18404506, nullptr, nullptr, 0x1000, "40180645"},

    };
    for (const auto& it : cases) {
        EXPECT_EQ(encoded(it.opcode, it.first, it.second, it.pc), it.bytes)
            << std::hex << it.opcode;
    }
}

/// The jump stands at the start of a fragment, its target `distance` bytes behind it.
class Relaxation : public MSP430Insn {
protected:
    std::string relax(std::uint32_t opcode, long target)
    {
        auto* section = new TOBFSection(HString::intern("CODE"));
        auto* insn = new TOBFMSP430Insn(opcode, number(target), nullptr, false);
        insn->setPC(0x8000);
        section->addInsn(insn);
        auto& list = section->fragments().front()->insns();
        auto position = list.begin();
        m_estimated = insn->estimatedLength();
        m_changed = insn->recode(list, position);
        m_atLast = std::next(position) == list.end();
        std::string text;
        for (TOBFInsn* item : list) {
            if (item->kind() == TOBFKind::Marker) {
                text += ":";
                continue;
            }
            char word[16];
            std::snprintf(word, sizeof word, "%04X", static_cast<TOBFMSP430Insn*>(item)->opcode());
            text += word;
            EXPECT_EQ(item->fragment(), section->fragments().front());
        }
        return text;
    }

    int m_estimated = 0;
    int m_changed = 0;
    bool m_atLast = false;
};

TEST_F(Relaxation, JumpsInReachStay)
{
    for (const long target : {0x8000L + 2 + 2 * 511, 0x8000L + 2 - 2 * 512}) {
        EXPECT_EQ(relax(0x2400, target), "2400");
        EXPECT_EQ(m_changed, 0);
        EXPECT_EQ(m_estimated, 2);
    }
}

TEST_F(Relaxation, JumpsOutOfReachBecomeBranches)
{
    const struct {
        std::uint32_t opcode;
        const char* result;
        int estimated;
    } cases[] = {
        {0x3C00, "4030", 4},      {0x3000, "30003C00:3C00:", 8}, {0x2000, "24003C00:", 6},
        {0x2400, "20003C00:", 6}, {0x2800, "2C003C00:", 6},      {0x2C00, "28003C00:", 6},
        {0x3400, "38003C00:", 6}, {0x3800, "34003C00:", 6},
    };
    for (const auto& it : cases) {
        for (const long target : {0x8000L + 2 + 2 * 512, 0x8000L + 2 - 2 * 513}) {
            EXPECT_EQ(relax(it.opcode, target), it.result);
            EXPECT_EQ(m_estimated, it.estimated);
            EXPECT_NE(m_changed, 0);
            EXPECT_TRUE(m_atLast);
        }
    }
    g_msp430x = true;
    EXPECT_EQ(relax(0x3C00, 0x20000), "0080");
}

TEST_F(MSP430Insn, BranchesChooseTheirForm)
{
    const auto branch = [](unsigned value) {
        TOBFMSP430Insn insn(0x4303, nullptr, nullptr, false);
        insn.encodeBranch(value);
        return insn.printOpCode();
    };
    EXPECT_EQ(branch(0x12345), "30404523");
    g_msp430x = true;
    EXPECT_EQ(branch(0x12345), "80014523");
    EXPECT_EQ(branch(0x2345), "30404523");
}

TEST_F(MSP430Insn, ListingTexts)
{
    const struct {
        std::uint32_t opcode;
        TOBFExpr *first, *second;
        const char* text;
    } cases[] = {
        {0x4506, nullptr, nullptr, "\tMOV.W\tR5, R6"},
        {0x5546, nullptr, nullptr, "\tADD.B\tR5, R6"},
        {0x4036, symbol("x"), nullptr, "\tMOV.W\t#x, R6"},
        {0x4216, symbol("x"), nullptr, "\tMOV.W\t&x, R6"},
        {0x4516, symbol("x"), nullptr, "\tMOV.W\tx(R5), R6"},
        {0x4526, nullptr, nullptr, "\tMOV.W\t@R5, R6"},
        {0x4136, nullptr, nullptr, "\tMOV.W\t@SP+, R6"},
        {0x4306, nullptr, nullptr, "\tMOV.W\t#0, R6"},
        {0x4226, nullptr, nullptr, "\tMOV.W\t#4, R6"},
        {0x4236, nullptr, nullptr, "\tMOV.W\t#8, R6"},
        {0x4336, nullptr, nullptr, "\tMOV.W\t#-1, R6"},
        {0x4582, nullptr, symbol("x"), "\tMOV.W\tR5, &x"},
        {0x4581, nullptr, number(2), "\tMOV.W\tR5, 2(SP)"},
        {0x1205, nullptr, nullptr, "\tPUSH.W\tR5"},
        {0x12B0, symbol("f"), nullptr, "\tCALL\t#f"},
        {0x1185, nullptr, nullptr, "\tSXT\tR5"},
        {0x1300, nullptr, nullptr, "\tRETI"},
        {0x1425, nullptr, nullptr, "\tPUSHM.A\tR5-R3"},
        {0x1723, nullptr, nullptr, "\tPOPM.W\tR3-R5"},
        {0x2000, symbol("l"), nullptr, "\tJNZ\tl"},
        {0x2400, symbol("l"), nullptr, "\tJZ\tl"},
        {0x2800, symbol("l"), nullptr, "\tJNC\tl"},
        {0x2C00, symbol("l"), nullptr, "\tJC\tl"},
        {0x3000, symbol("l"), nullptr, "\tJN\tl"},
        {0x3400, symbol("l"), nullptr, "\tJGE\tl"},
        {0x3800, symbol("l"), nullptr, "\tJL\tl"},
        {0x3C00, symbol("l"), nullptr, "\tJMP\tl"},
        {0x13B0, symbol("f"), nullptr, "\tCALLA\t#f"},
        {0x0110, nullptr, nullptr, "\tRETA"},
        {0x0085, symbol("x"), nullptr, "\tMOVA\t#x, R5"},
        {0x0645, nullptr, nullptr, "\tRLAM.A\t#2, R5"},
        {0x18404506, nullptr, nullptr, "\tMOVX.W\tR5, R6"},
        {0x18004546, nullptr, nullptr, "\tMOVX.A\tR5, R6"},
        {0x18434506, nullptr, nullptr, "\tRPT #4 || \tMOVX.W\tR5, R6"},
        {0x18C54506, nullptr, nullptr, "\tRPT R5 || \tMOVX.W\tR5, R6"},
        {0x1380, symbol("v"), nullptr, "\tCALLA\t&v"},
    };
    for (const auto& it : cases) {
        TOBFMSP430Insn insn(it.opcode, it.first, it.second, false);
        EXPECT_EQ(insn.printString(), it.text) << std::hex << it.opcode;
    }
    TOBFMSP430Insn placed(0x4303, nullptr, nullptr, false);
    placed.setPC(0x1234A);
    EXPECT_EQ(placed.printPC(), "01234A");
}

} // namespace
