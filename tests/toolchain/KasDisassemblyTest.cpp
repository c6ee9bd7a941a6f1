// The assembler takes what the disassembler shows, and makes the same words of it.
#include "KasTestSupport.h"
#include "objfile/msp430/MSP430Disassembler.h"
#include "objfile/msp430/MSP430Instructions.h"

#include <gtest/gtest.h>

#include <random>

namespace {

constexpr unsigned Code = 0x1000;
constexpr int SamplesOfARow = 200;

std::string hexOf(const std::vector<unsigned>& words, unsigned length)
{
    std::string text;
    for (unsigned i = 0; i < length / 2; ++i) {
        char digits[12];
        std::snprintf(digits, sizeof digits, "%02x%02x", words[i] & 0xFF, words[i] >> 8);
        text += digits;
    }
    return text;
}

bool isPlainRegister(unsigned reg) { return reg == 1 || reg > 3; }

/// Whether a word is the only one with its text, and the text one of the assembler: constants have
/// several forms, what ignores some of its bits is shown alike, and lists of registers are written
/// as counts.
bool hasOneText(const MSP430Instruction& row, unsigned word)
{
    const unsigned high = word >> 8 & 15, low = word & 15, mode = word >> 4 & 3;
    switch (row.format) {
    case MSP430Format::TwoOperand: return isPlainRegister(high) && isPlainRegister(low);
    case MSP430Format::OneOperand: return isPlainRegister(low) && !(low == 1 && mode == 2);
    case MSP430Format::Jump:
    case MSP430Format::Rotate: return true;
    case MSP430Format::AddressMove: return isPlainRegister(high) && isPlainRegister(low);
    default: return false;
    }
}

} // namespace

TEST(KasDisassembly, TakesWhatTheDisassemblerShows)
{
    std::mt19937 random(430);
    unsigned compared = 0;
    for (const MSP430Instruction& row : msp430Instructions) {
        for (int i = 0; i < SamplesOfARow; ++i) {
            const unsigned word = row.opcode | (unsigned(random()) & ~row.mask & 0xFFFF);
            if (!hasOneText(row, word))
                continue;
            const std::vector<unsigned> words = {word, 0x2000 + 2 * (unsigned(random()) & 0xFF),
                                                 0x3000 + 2 * (unsigned(random()) & 0xFF)};
            const MSP430DisassemblyLine line = MSP430Disassembler([&](unsigned at) {
                                                   return words.at((at - Code) / 2);
                                               }).disassemble(Code);
            if (line.text.find('?') != std::string::npos)
                continue;
            const Assembled again(" " + line.text.substr(20), msp430xOptions());
            ++compared;
            EXPECT_EQ(again.messages, std::vector<std::string>{}) << line.text;
            EXPECT_EQ(again.bytes(), hexOf(words, line.length)) << line.text;
        }
    }
    EXPECT_GT(compared, 4000u);
}
