#include "InstructionLength.h"
#include "objfile/msp430/MSP430Disassembler.h"

#include <gtest/gtest.h>

namespace {

unsigned shownLength(const std::vector<unsigned>& words)
{
    return MSP430Disassembler(
               [&](unsigned at) { return words.at((at - InstructionLength::Code) / 2); })
        .disassemble(InstructionLength::Code)
        .length;
}

} // namespace

TEST(InstructionLength, IsThatOfTheDisassembly)
{
    unsigned compared = 0;
    for (unsigned word = 0; word < 0x10000; ++word) {
        if (InstructionLength::isOther(word) || InstructionLength::readsAtThePC(word))
            continue;
        for (const std::vector<unsigned>& extension :
             {std::vector<unsigned>{}, {0x1800}, {0x1840}, {0x1FCF}}) {
            std::vector<unsigned> words = extension;
            words.insert(words.end(), {word, 0x0123, 0x4567, 0x4303});
            const InstructionLength fetched(words);
            if (!fetched.supported)
                continue;
            ++compared;
            EXPECT_EQ(fetched.bytes, shownLength(words))
                << std::hex << word << (extension.empty() ? "" : " with an extension");
        }
    }
    EXPECT_GT(compared, 240000u);
}
