// Each base instruction word, with random words behind it, in this disassembler and in
// `llvm-objdump`. Both texts are brought into one form, that of the plain instructions. What the
// two take differently, or the peer not at all:
// - the peer knows no constants as single operands, and prints no operands of some modes of R0, R2
//   and R3; it fails on PUSH @Rn (0x1220 to 0x123F);
// - BR, NOP, CLRC, SETC and others of that kind print here whatever the size, and CLRC, CLRN and
//   CLRZ with any destination in R2, even in memory;
// - ADD R3, R3 is RLA here, although R3 as a source is 0;
// - words that are MSP430X instructions.
#include "objfile/msp430/MSP430Disassembler.h"

#include "TestFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <random>
#include <sstream>
#include <vector>

namespace {

/// Words of a case: an instruction of at most three, and what brings the peer back into step.
constexpr unsigned SlotWords = 6;
constexpr unsigned NoOperation = 0x4303;

bool isPushIndirect(unsigned word) { return word >= 0x1220 && word < 0x1240; }
bool isBase(unsigned word)
{
    return !isPushIndirect(word) && (word < 0x1400 ? word >= 0x1000 : word >= 0x2000);
}

struct Instruction {
    std::string name; ///< in upper case, with ".B" or ".W" where there are both
    std::vector<std::string> operands;
    unsigned length = 0;
    bool sized = true; ///< false if the text doesn't tell the size

    friend bool operator==(const Instruction& a, const Instruction& b)
    {
        const auto plain = [](const Instruction& one) {
            return one.name.substr(0, one.name.find('.'));
        };
        const bool sameName = a.sized && b.sized ? a.name == b.name : plain(a) == plain(b);
        return sameName && a.operands == b.operands && a.length == b.length;
    }
    friend std::ostream& operator<<(std::ostream& out, const Instruction& one)
    {
        out << one.name;
        for (const std::string& operand : one.operands)
            out << ' ' << operand;
        return out << " (" << one.length << ')';
    }
};

/// How an emulated instruction is written as a plain one; "$" is its operand.
struct Emulated {
    const char* plain;
    const char* source;
    const char* destination;
    bool sized = true; ///< false if the text doesn't tell the size
};
const std::map<std::string, Emulated> EmulatedInstructions = {
    {"ADC", {"ADDC", "#0", "$"}},         {"BR", {"MOV", "$", "R0", false}},
    {"CLR", {"MOV", "#0", "$"}},          {"CLRC", {"BIC", "#1", "R2", false}},
    {"CLRN", {"BIC", "#4", "R2", false}}, {"CLRZ", {"BIC", "#2", "R2", false}},
    {"DADC", {"DADD", "#0", "$"}},        {"DEC", {"SUB", "#1", "$"}},
    {"DECD", {"SUB", "#2", "$"}},         {"DINT", {"BIC", "#8", "R2", false}},
    {"EINT", {"BIS", "#8", "R2", false}}, {"INC", {"ADD", "#1", "$"}},
    {"INCD", {"ADD", "#2", "$"}},         {"INV", {"XOR", "#65535", "$"}},
    {"NOP", {"MOV", "#0", "R3", false}},  {"POP", {"MOV", "@R1+", "$"}},
    {"RET", {"MOV", "@R1+", "R0"}},       {"RLA", {"ADD", "$", "$"}},
    {"RLC", {"ADDC", "$", "$"}},          {"SBC", {"SUBC", "#0", "$"}},
    {"SETC", {"BIS", "#1", "R2", false}}, {"SETN", {"BIS", "#4", "R2", false}},
    {"SETZ", {"BIS", "#2", "R2", false}}, {"TST", {"CMP", "#0", "$"}},
};
const std::map<std::string, std::string> OtherNames = {
    {"JNE", "JNZ"}, {"JEQ", "JZ"}, {"JLO", "JNC"}, {"JHS", "JC"}};

void replaceAll(std::string& text, const std::string& what, const std::string& with)
{
    for (std::size_t at = text.find(what); at != std::string::npos;
         at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
}

/// A number in decimal, of 16 bits.
std::string number(const std::string& digits)
{
    return std::to_string(std::strtol(digits.c_str(), nullptr, 0) & 0xFFFF);
}

std::string operand(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::toupper(c));
    replaceAll(text, "SP", "R1");
    replaceAll(text, "PC", "R0");
    replaceAll(text, "0X", "0x");
    const std::size_t first = text.find_first_not_of("#&@R");
    if (first == std::string::npos || text[0] == 'R' || text[0] == '@')
        return text;
    const std::size_t end = text.find('(');
    return text.substr(0, first) + number(text.substr(first, end - first))
        + (end == std::string::npos ? "" : text.substr(end));
}

Instruction plainForm(std::string name, const std::string& operands, unsigned length)
{
    Instruction made;
    made.length = length;
    for (char& c : name)
        c = static_cast<char>(std::toupper(c));
    std::istringstream list(operands);
    for (std::string one; std::getline(list, one, ',');)
        made.operands.push_back(operand(one.substr(one.find_first_not_of(' '))));
    const std::size_t dot = name.find('.');
    // A word unless it says otherwise.
    const std::string size =
        dot == std::string::npos || name.substr(dot) == ".W" ? "" : name.substr(dot);
    name.erase(std::min(dot, name.size()));
    if (const auto other = OtherNames.find(name); other != OtherNames.end())
        name = other->second;
    if (const auto found = EmulatedInstructions.find(name); found != EmulatedInstructions.end()) {
        made.sized = found->second.sized;
        const std::string own = made.operands.empty() ? "" : made.operands[0];
        const auto filled = [&](const char* text) { return *text == '$' ? own : text; };
        name = found->second.plain;
        made.operands = {filled(found->second.source), filled(found->second.destination)};
    }
    made.name = name + size;
    return made;
}

struct Slot {
    unsigned words[SlotWords];
};

std::vector<Slot> makeSlots()
{
    std::mt19937 random(430);
    const auto behind = [&random] {
        for (;;)
            if (const unsigned word = random() & 0xFFFF; !isPushIndirect(word))
                return word;
    };
    std::vector<Slot> slots;
    for (unsigned word = 0; word < 0x10000; ++word)
        if (isBase(word))
            slots.push_back({{word, behind(), behind(), NoOperation, NoOperation, NoOperation}});
    return slots;
}

Instruction ours(const Slot& slot, unsigned address)
{
    const MSP430Disassembler disassembler(
        [&](unsigned at) { return slot.words[(at - address) / 2]; });
    const MSP430DisassemblyLine line = disassembler.disassemble(address);
    if (line.text.size() <= 30)
        return plainForm(line.text.substr(std::min<std::size_t>(line.text.size(), 20)), "",
                         line.length);
    const std::string name = line.text.substr(20, line.text.find(' ', 20) - 20);
    return plainForm(name, line.text.substr(30), line.length);
}

/// What the peer shows at each address; what it doesn't know is left out.
std::map<unsigned, Instruction> theirs(const std::vector<Slot>& slots)
{
    const TestFolder folder;
    std::ofstream source(folder / "words.s");
    source << ".text\n";
    for (const Slot& slot : slots)
        for (const unsigned word : slot.words)
            source << ".short " << word << '\n';
    source.close();
    const std::string command = "cd " + (folder / "")
        + " && llvm-mc -triple=msp430 -filetype=obj "
          "words.s -o words.o && llvm-objdump -d --triple=msp430 words.o > text";
    EXPECT_EQ(std::system(command.c_str()), 0);
    std::map<unsigned, Instruction> all;
    std::ifstream lines(folder / "text");
    for (std::string line; std::getline(lines, line);) {
        const std::size_t colon = line.find(": ");
        const std::size_t tab = line.find('\t');
        if (colon > tab || tab == std::string::npos || line.find("<unknown>") != std::string::npos)
            continue;
        const unsigned address = unsigned(std::stoul(line.substr(0, colon), nullptr, 16));
        std::istringstream bytes(line.substr(colon + 1, tab - colon - 1));
        unsigned length = 0;
        for (std::string byte; bytes >> byte;)
            ++length;
        std::istringstream text(line.substr(tab + 1));
        std::string name;
        std::string operands;
        text >> name;
        std::getline(text >> std::ws, operands);
        if (name[0] == 'j')
            operands =
                std::to_string(long(address) + std::strtol(operands.c_str() + 1, nullptr, 10));
        all[address] = plainForm(name, operands, length);
    }
    return all;
}

/// CLRC, CLRN and CLRZ, which are so whatever the destination's mode.
bool clearsFlagsByText(unsigned word)
{
    return (word & 0xFF3F) == 0xC312 || (word & 0xFF3F) == 0xC322 || (word & 0xFF3F) == 0xC222;
}

bool isSingleConstant(unsigned word)
{
    const unsigned mode = word >> 4 & 3, reg = word & 15;
    return word < 0x1300 && ((reg == 2 && mode >= 2) || reg == 3);
}

bool isDoubledConstant(unsigned word) { return (word & 0xFFBF) == 0x5303; }

} // namespace

TEST(DisassemblyPeer, LlvmObjdumpShowsTheSame)
{
    if (std::system("command -v llvm-objdump llvm-mc >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "llvm is not installed";
    const std::vector<Slot> slots = makeSlots();
    const std::map<unsigned, Instruction> peer = theirs(slots);
    unsigned compared = 0;
    for (std::size_t i = 0; i < slots.size(); ++i) {
        const unsigned word = slots[i].words[0];
        const unsigned address = unsigned(i) * 2 * SlotWords;
        const auto found = peer.find(address);
        if (found == peer.end() || isSingleConstant(word) || isDoubledConstant(word))
            continue;
        ++compared;
        const Instruction own = ours(slots[i], address);
        if (clearsFlagsByText(word))
            EXPECT_EQ(own.length, found->second.length) << std::hex << word;
        else
            EXPECT_EQ(own, found->second) << std::hex << word;
    }
    EXPECT_GT(compared, 56000u);
}
