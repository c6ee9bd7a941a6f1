#include "objfile/msp430/MSP430Disassembler.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Words = std::vector<unsigned>;

MSP430DisassemblyLine disassemble(const Words& words, unsigned address = 0x1000)
{
    const MSP430Disassembler disassembler([&](unsigned at) {
        const unsigned index = (at - address) / 2;
        EXPECT_LT(index, words.size()) << "read behind the instruction";
        return index < words.size() ? words[index] : 0;
    });
    return disassembler.disassemble(address);
}

struct Case {
    Words words;
    const char* text; ///< mnemonic, "|", operands
};

/// Mnemonic and operands as they stand, with the blanks between them checked and made one "|".
std::string shown(const std::string& line)
{
    if (line.size() <= 30)
        return line.substr(20);
    const std::string name = line.substr(20, line.find(' ', 20) - 20);
    EXPECT_EQ(line.substr(20 + name.size(), 10 - name.size()), std::string(10 - name.size(), ' '))
        << line;
    return name + "|" + line.substr(30);
}

void check(const std::vector<Case>& cases)
{
    for (const Case& c : cases) {
        const MSP430DisassemblyLine line = disassemble(c.words);
        ASSERT_GE(line.text.size(), 20u) << c.text;
        EXPECT_EQ(shown(line.text), c.text) << std::hex << c.words[0];
        EXPECT_EQ(line.length, 2 * c.words.size()) << c.text;
    }
}

TEST(MSP430Disassembler, JumpsGoRoundInTheAddressSpace)
{
    EXPECT_EQ(disassemble({0x3FFD}, 0).target, 0xFFFFCu);
    EXPECT_EQ(shown(disassemble({0x3FFD}, 0).text), "JMP|0xffffc");
}

TEST(MSP430Disassembler, ColumnsOfTheLine)
{
    const struct {
        Words words;
        const char* line;
    } cases[] = {
        {{0x4303}, "0343                NOP"},
        {{0x4506}, "0645                MOV.W     R5, R6"},
        {{0x40B2, 0x5A80, 0x0120}, "b240805a2001        MOV.W     #0x5a80, &0x0120"},
        {{0x1840, 0x40B2, 0x5A80, 0x0120}, "4018b240805a2001    MOVX.W    #0x05a80, &0x00120"},
        {{0x0625, 0x1234}, "25063412            MOVA    &0x61234, R5"},
        {{0x1800, 0x1801}, "00180118            ????????"},
        {{0x1310}, "????????"},         // nothing else, not even the words
        {{0x1840, 0x13A0}, "????????"}, // behind an extension too
    };
    for (const auto& c : cases) {
        EXPECT_EQ(disassemble(c.words).text, c.line);
        EXPECT_EQ(disassemble(c.words).length, 2 * c.words.size()) << c.line;
    }
}

TEST(MSP430Disassembler, TwoOperandNames)
{
    const char* const names[] = {"MOV",  "ADD", "ADDC", "SUBC", "SUB", "CMP",
                                 "DADD", "BIT", "BIC",  "BIS",  "XOR", "AND"};
    for (unsigned i = 0; i < 12; ++i) {
        const unsigned word = (i + 4) << 12 | 0x0506;
        const std::string name = names[i];
        EXPECT_EQ(shown(disassemble({word}).text), name + ".W|R5, R6");
        EXPECT_EQ(shown(disassemble({word | 0x40}).text), name + ".B|R5, R6");
        EXPECT_EQ(shown(disassemble({0x1840, word}).text), name + "X.W|R5, R6");
        EXPECT_EQ(shown(disassemble({0x1840, word | 0x40}).text), name + "X.B|R5, R6");
        EXPECT_EQ(shown(disassemble({0x1800, word | 0x40}).text), name + "X.A|R5, R6");
        EXPECT_EQ(shown(disassemble({0x1800, word}).text), name + "X.?|R5, R6");
    }
}

TEST(MSP430Disassembler, SourceOperands)
{
    check({
        {{0x5226}, "ADD.W|#4, R6"},
        {{0x5236}, "ADD.W|#8, R6"},
        {{0x5306}, "ADD.W|#0, R6"},
        {{0x5316}, "ADD.W|#1, R6"},
        {{0x5326}, "ADD.W|#2, R6"},
        {{0x5336}, "ADD.W|#-1, R6"},
        {{0x5006}, "ADD.W|PC, R6"},
        {{0x5106}, "ADD.W|SP, R6"},
        {{0x5206}, "ADD.W|R2, R6"},
        {{0x5F06}, "ADD.W|R15, R6"},
        {{0x5016, 0x1234}, "ADD.W|0x1234, R6"},
        {{0x1940, 0x5016, 0x1234}, "ADDX.W|0x21234, R6"},
        {{0x5216, 0x0020}, "ADD.W|&0x0020, R6"},
        {{0x1FC0, 0x5216, 0x0020}, "ADDX.W|&0xf0020, R6"},
        {{0x5516, 0xFFFE}, "ADD.W|0xfffe(R5), R6"},
        {{0x5116, 0x0002}, "ADD.W|0x0002(R1), R6"},
        {{0x18C0, 0x5516, 0xFFFE}, "ADDX.W|0x1fffe(R5), R6"},
        {{0x5026}, "ADD.W|@R0, R6"},
        {{0x5126}, "ADD.W|@R1, R6"},
        {{0x5536}, "ADD.W|@R5+, R6"},
        {{0x5136}, "ADD.W|@R1+, R6"},
        {{0x5036, 0x0300}, "ADD.W|#0x0300, R6"},
        {{0x1BC0, 0x5036, 0x0300}, "ADDX.W|#0x70300, R6"},
    });
}

TEST(MSP430Disassembler, DestinationOperands)
{
    check({
        {{0x5501}, "ADD.W|R5, SP"},
        {{0x5500}, "ADD.W|R5, PC"},
        {{0x5502}, "ADD.W|R5, R2"},
        {{0x5580, 0x0010}, "ADD.W|R5, 0x0010"},
        {{0x1843, 0x5580, 0x0010}, "ADDX.W|R5, 0x30010"},
        {{0x5581, 0x0004}, "ADD.W|R5, 0x0004(SP)"},
        {{0x1841, 0x5581, 0x0004}, "ADDX.W|R5, 0x10004(SP)"},
        {{0x5582, 0x0200}, "ADD.W|R5, &0x0200"},
        {{0x184F, 0x5582, 0x0200}, "ADDX.W|R5, &0xf0200"},
        {{0x5583, 0x0006}, "ADD.W|R5, 0x0006(R3)"},
        {{0x5586, 0x0006}, "ADD.W|R5, 0x0006(R6)"},
        {{0x1840, 0x5586, 0x0006}, "ADDX.W|R5, 0x0006(R6)"}, // four digits with an extension too
        {{0x1842, 0x5586, 0x0006}, "ADDX.W|R5, 0x20006(R6)"},
        {{0x5595, 0x1111, 0x2222}, "ADD.W|0x1111(R5), 0x2222(R5)"},
        {{0x18C2, 0x5292, 0x1111, 0x2222}, "ADDX.W|&0x11111, &0x22222"},
    });
}

TEST(MSP430Disassembler, EmulatedForms)
{
    check({
        {{0x4130}, "RET"},
        {{0x1840, 0x4130}, "RET"},
        {{0x0110}, "RETA"},
        {{0x1800, 0x0110}, "RETA"},
        {{0x6306}, "ADC.W|R6"},
        {{0x6346}, "ADC.B|R6"},
        {{0x6382, 0x0200}, "ADC.W|&0x0200"},
        {{0x1840, 0x6306}, "ADCX.W|R6"},
        {{0x6303}, "ADC.W|R3"}, // ahead of RLC
        {{0x6606}, "RLC.W|R6"},
        {{0x1800, 0x6646}, "RLCX.A|R6"},
        {{0x6686, 0x0002}, "ADDC.W|R6, 0x0002(R6)"},
        {{0x6626}, "ADDC.W|@R6, R6"},
        {{0x6101}, "RLC.W|SP"},
        {{0x5646}, "RLA.B|R6"},
        {{0x1840, 0x5606}, "RLAX.W|R6"},
        {{0x5303}, "RLA.W|R3"},
        {{0x4500}, "BR|R5"},
        {{0x4300}, "BR|#0"},   // ahead of CLR
        {{0x4170}, "BR|@R1+"}, // ahead of POP
        {{0x4343}, "NOP"},
        {{0x1840, 0x4303}, "NOP"},
        {{0x4305}, "CLR.W|R5"},
        {{0x4345}, "CLR.B|R5"},
        {{0x4302}, "CLR.W|R2"},
        {{0x4382, 0x0200}, "CLR.W|&0x0200"},
        {{0x1840, 0x4345}, "CLRX.B|R5"},
        {{0x4383, 0x0200}, "MOV.W|#0, 0x0200(R3)"},
        {{0x4135}, "POP.W|R5"},
        {{0x41B2, 0x0200}, "POP.W|&0x0200"},
        {{0x1800, 0x4175}, "POPX.A|R5"},
        {{0xC312}, "CLRC"},
        {{0xC392, 0x0021}, "CLRC"}, // whatever the destination's mode
        {{0xC222}, "CLRN"},
        {{0xC322}, "CLRZ"},
        {{0xC232}, "DINT"},
        {{0xC2B2, 0x0200}, "BIC.W|#8, &0x0200"},
        {{0xA306}, "DADC.W|R6"},
        {{0x1840, 0xA346}, "DADCX.B|R6"},
        {{0xA316}, "DADD.W|#1, R6"},
        {{0xD232}, "EINT"},
        {{0xD2B2, 0x0200}, "BIS.W|#8, &0x0200"},
        {{0xD312}, "SETC"},
        {{0x1840, 0xD312}, "SETC"},
        {{0xD392, 0x0200}, "BIS.W|#1, &0x0200"},
        {{0xD222}, "SETN"},
        {{0xD322}, "SETZ"},
        // Not told apart from the instruction that they stand for.
        {{0x5316}, "ADD.W|#1, R6"},
        {{0x9306}, "CMP.W|#0, R6"},
        {{0xE336}, "XOR.W|#-1, R6"},
        {{0x7306}, "SUBC.W|#0, R6"},
    });
}

TEST(MSP430Disassembler, OneOperandForms)
{
    check({
        {{0x1005}, "RRC.W|R5"},
        {{0x1045}, "RRC.B|R5"},
        {{0x1085}, "SWPB|R5"},
        {{0x1105}, "RRA.W|R5"},
        {{0x1165}, "RRA.B|@R5"},
        {{0x1185}, "SXT|R5"},
        {{0x1205}, "PUSH.W|R5"},
        {{0x1230, 0x1234}, "PUSH.W|#0x1234"},
        {{0x1222}, "PUSH.W|#4"},
        {{0x1285}, "CALL|R5"},
        {{0x1840, 0x1005}, "RRCX.W|R5"},
        {{0x1800, 0x10C5}, "SWPBX.A|R5"},
        {{0x1840, 0x1185}, "SXTX.W|R5"},
        {{0x1800, 0x1255, 0x0004}, "PUSHX.A|0x00004(R5)"},
        {{0x1300}, "RETI"},
        {{0x1425}, "PUSHM.A|R5-R3"},
        {{0x1503}, "PUSHM.W|R3-R3"},
        {{0x1623}, "POPM.A|R3-R5"},
        {{0x171A}, "POPM.W|R10-R11"},
    });
    for (const unsigned word : {0x1310u, 0x1330u, 0x13A0u, 0x13C0u, 0x13FFu}) {
        const MSP430DisassemblyLine line = disassemble({word});
        EXPECT_EQ(line.text, "????????");
        EXPECT_EQ(line.length, 2u);
        EXPECT_FALSE(line.isTransfer);
    }
}

TEST(MSP430Disassembler, AddressInstructions)
{
    check({
        {{0x0500}, "BRA|R5"},
        {{0x0506}, "MOVA|@R5, R6"},
        {{0x0510}, "BRA|@R5+"},
        {{0x0516}, "MOVA|@R5+, R6"},
        {{0x0530, 0xFFFE}, "BRA|-2(R5)"},
        {{0x0536, 0x7FFF}, "MOVA|32767(R5), R6"},
        {{0x0040 | 6}, "RRCM.A|#1, R6"},
        {{0x0450 | 6}, "RRCM.W|#2, R6"},
        {{0x0940 | 6}, "RRAM.A|#3, R6"},
        {{0x0D50 | 6}, "RRAM.W|#4, R6"},
        {{0x0240 | 6}, "RLAM.A|#1, R6"},
        {{0x0650 | 6}, "RLAM.W|#2, R6"},
        {{0x0B40 | 6}, "RRUM.A|#3, R6"},
        {{0x0F50 | 6}, "RRUM.W|#4, R6"},
        {{0x0562, 0x1234}, "MOVA|R5, &0x21234"},
        {{0x0560, 0x1234}, "MOVA|R5, &0x01234"},
        {{0x0576, 0x8000}, "MOVA|R5, -32768(R6)"},
        {{0x0180, 0x2345}, "BRA|#0x12345"},
        {{0x0080, 0x0000}, "BRA|#0x00000"},
        {{0x0086, 0x0000}, "CLRA|R6"},
        {{0x0186, 0x0000}, "MOVA|#0x10000, R6"},
        {{0x01B6, 0x2345}, "SUBA|#0x12345, R6"},
        {{0x00C0}, "BRA|PC"},
        {{0x01C6}, "MOVA|SP, R6"},
        {{0x06C1}, "MOVA|R6, SP"},
        {{0x05D0}, "CMPA|R5, PC"},
        {{0x05E6}, "ADDA|R5, R6"},
        {{0x02F1}, "SUBA|R2, SP"},
    });
    const struct {
        Words words;
        const char* text;
    } near[] = {
        {{0x0520, 0x1234}, "BRA     &0x51234"},
        {{0x0521, 0x1234}, "MOVA    &0x51234, R1"},
        {{0x0196, 0x2345}, "CMPA    #0x12345, R6"},
        {{0x00A0, 0x0000}, "ADDA    #0x00000, R0"},
    };
    for (const auto& c : near)
        EXPECT_EQ(disassemble(c.words).text.substr(20), c.text);
}

TEST(MSP430Disassembler, TransfersAndTheirTargets)
{
    const struct {
        unsigned address;
        Words words;
        const char* text;
        unsigned target;
    } cases[] = {
        {0x1000, {0x2001}, "JNZ|0x01004", 0x1004},
        {0x1000, {0x2400}, "JZ|0x01002", 0x1002},
        {0x1000, {0x29FF}, "JNC|0x01400", 0x1400},
        {0x1000, {0x2E00}, "JC|0x00c02", 0x0C02},
        {0x1000, {0x3002}, "JN|0x01006", 0x1006},
        {0x1000, {0x3402}, "JGE|0x01006", 0x1006},
        {0x1000, {0x3802}, "JL|0x01006", 0x1006},
        {0x1000, {0x3FFF}, "JMP|0x01000", 0x1000},
        {0xFFFE, {0x3C00}, "JMP|0x10000", 0x10000},
        {0x1000, {0x4030, 0xF000}, "BR|#0xf000", 0xF000},
        {0x1000, {0x4010, 0x0020}, "BR|0x0020", 0x1024},
        {0x1000, {0x4210, 0x0020}, "BR|&0x0020", 0x20},
        {0x1000, {0x4510, 0x0020}, "BR|0x0020(R5)", 0x20},
        {0x1000, {0x4500}, "BR|R5", 0},
        {0x1000, {0x18C0, 0x4030, 0xF000}, "BR|#0x1f000", 0x1F000},
        {0x1000, {0x12B0, 0xF000}, "CALL|#0xf000", 0xF000},
        {0x1000, {0x1290, 0x0020}, "CALL|0x0020", 0x1024},
        {0x1000, {0x1284}, "CALL|R4", 0},
        {0x1000, {0x1345}, "CALLA|R5", 0},
        {0x1000, {0x1355, 0x0020}, "CALLA|0x0020(R5)", 0x20},
        {0x1000, {0x1365}, "CALLA|@R5", 0},
        {0x1000, {0x1375}, "CALLA|@R5+", 0},
        {0x1000, {0x1382, 0x1234}, "CALLA|&0x21234", 0x21234},
        {0x1000, {0x1391, 0x0010}, "CALLA|0x11014", 0x11014},
        {0x1000, {0x13B3, 0x1234}, "CALLA|#0x31234", 0x31234},
    };
    for (const auto& c : cases) {
        const MSP430DisassemblyLine line = disassemble(c.words, c.address);
        EXPECT_EQ(shown(line.text), c.text);
        EXPECT_TRUE(line.isTransfer) << c.text;
        EXPECT_EQ(line.target, c.target) << c.text;
        EXPECT_EQ(line.length, 2 * c.words.size()) << c.text;
    }
    for (const Words& words : {Words{0x4130},
                               {0x0110},
                               {0x1300},
                               {0x0500},
                               {0x0180, 0x2345},
                               {0x5500},
                               {0x1425},
                               {0x1800, 0x1800}})
        EXPECT_FALSE(disassemble(words).isTransfer) << std::hex << words[0];
}

TEST(MSP430Disassembler, EveryWordGivesALine)
{
    for (const bool extended : {false, true})
        for (unsigned word = 0; word < 0x10000; ++word) {
            const MSP430Disassembler disassembler([=](unsigned at) {
                return at == 0 ? (extended ? 0x1800 : word) : at == 2 && extended ? word : 0xFFFF;
            });
            const MSP430DisassemblyLine line = disassembler.disassemble(0);
            ASSERT_GE(line.length, 2u);
            ASSERT_LE(line.length, 8u);
            ASSERT_TRUE(line.text == "????????" || line.text.size() > 20) << std::hex << word;
        }
}

} // namespace
