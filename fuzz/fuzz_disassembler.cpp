// Any words as instructions, one behind the other: each has a line of text, reads nothing ahead of
// or behind itself, and is as long as the simulator takes it for.

#include "objfile/msp430/MSP430Disassembler.h"
#include "tests/target/InstructionLength.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace {

constexpr unsigned Code = InstructionLength::Code;
constexpr unsigned OtherCode = 0x5A00;
constexpr unsigned Padding = 0x4303;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

bool isPrintable(char c) { return c >= ' ' && c <= '~'; }

unsigned disassemble(const std::vector<unsigned>& words)
{
    unsigned behind = Code;
    const MSP430Disassembler disassembler([&](unsigned address) {
        require(address >= Code && address < Code + 2 * InstructionLength::MostWords);
        behind = std::max(behind, address + 2);
        return words[(address - Code) / 2];
    });
    const MSP430DisassemblyLine line = disassembler.disassemble(Code);
    require(Code + line.length == behind);
    require(!line.text.empty() && line.text.size() < 64);
    require(std::all_of(line.text.begin(), line.text.end(), isPrintable));
    return line.length;
}

/// Where an operand is found from the PC, its reads can't be told from fetches.
bool mayReadItself(unsigned word)
{
    return InstructionLength::readsAtThePC(word) || (word & 0xFFF0) == 0x1390
        || (word >> 8 & 15) == 0 || (word & 15) == 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::vector<unsigned> words(InstructionLength::MostWords);
    for (std::size_t at = 0; at + 1 < std::min<std::size_t>(size, 4096);) {
        for (std::size_t i = 0; i < words.size(); ++i)
            words[i] = at + 2 * i + 1 < size
                ? unsigned(data[at + 2 * i] | data[at + 2 * i + 1] << 8)
                : Padding;
        const unsigned length = disassemble(words);
        const bool isExtended = (words[0] & 0xF800) == 0x1800;
        const unsigned word = words[isExtended ? 1 : 0];
        if (!InstructionLength::isOther(word) && !mayReadItself(word)) {
            // An operand may lie where the instruction is, but not in both places.
            const InstructionLength here(words);
            const InstructionLength elsewhere(words, OtherCode);
            require(!here.supported || std::min(here.bytes, elsewhere.bytes) == length);
        }
        at += length;
    }
    return 0;
}
