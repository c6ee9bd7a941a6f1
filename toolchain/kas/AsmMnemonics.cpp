#include "toolchain/kas/AsmMnemonics.h"

#include <algorithm>
#include <iterator>

// Encodings and emulated instructions: MSP430x2xx (SLAU144) and MSP430x5xx (SLAU208) family guides,
// chapters "CPU" and "CPUX".

namespace {

using enum AsmShape;

constexpr AsmSizes BW = AsmSizes::ByteWord;
constexpr AsmSizes W = AsmSizes::Word;
constexpr AsmSizes WA = AsmSizes::WordAddress;
constexpr AsmSizes No = AsmSizes::None;

constexpr std::uint16_t Mov = 0x4000, Add = 0x5000, Addc = 0x6000, Subc = 0x7000, Sub = 0x8000,
                        Cmp = 0x9000, Dadd = 0xA000, Bit = 0xB000, Bic = 0xC000, Bis = 0xD000,
                        Xor = 0xE000, And = 0xF000;

/// Sorted by name.
constexpr AsmMnemonic Mnemonics[] = {
    {"adc", Constant, Addc, BW, 0, true, false},
    {"add", TwoOperand, Add, BW, 0, true, false},
    {"adda", Address, 0x00A0, No, 0, false, true},
    {"addc", TwoOperand, Addc, BW, 0, true, false},
    {"and", TwoOperand, And, BW, 0, true, false},
    {"bic", TwoOperand, Bic, BW, 0, true, false},
    {"bis", TwoOperand, Bis, BW, 0, true, false},
    {"bit", TwoOperand, Bit, BW, 0, true, false},
    {"br", Branch, Mov, No, 0, false, false},
    {"bra", AddressBranch, 0x0080, No, 0, false, true},
    {"call", Call, 0x1280, No, 0, false, false},
    {"calla", AddressCall, 0x1340, No, 0, false, true},
    {"clr", Constant, Mov, BW, 0, true, false},
    {"clra", AddressConstant, 0x0080, No, 0, false, true},
    {"clrc", Fixed, 0xC312, No, 0, false, false},
    {"clrn", Fixed, 0xC222, No, 0, false, false},
    {"clrz", Fixed, 0xC322, No, 0, false, false},
    {"cmp", TwoOperand, Cmp, BW, 0, true, false},
    {"cmpa", Address, 0x0090, No, 0, false, true},
    {"dadc", Constant, Dadd, BW, 0, true, false},
    {"dadd", TwoOperand, Dadd, BW, 0, true, false},
    {"dec", Constant, Sub, BW, 1, true, false},
    {"decd", Constant, Sub, BW, 2, true, false},
    {"decda", AddressConstant, 0x00B0, No, 2, false, true},
    {"dint", Fixed, 0xC232, No, 0, false, false},
    {"eint", Fixed, 0xD232, No, 0, false, false},
    {"inc", Constant, Add, BW, 1, true, false},
    {"incd", Constant, Add, BW, 2, true, false},
    {"incda", AddressConstant, 0x00A0, No, 2, false, true},
    {"inv", Constant, Xor, BW, -1, true, false},
    {"jc", Jump, 0x2C00, No, 0, false, false},
    {"jeq", Jump, 0x2400, No, 0, false, false},
    {"jge", Jump, 0x3400, No, 0, false, false},
    {"jhs", Jump, 0x2C00, No, 0, false, false},
    {"jl", Jump, 0x3800, No, 0, false, false},
    {"jlo", Jump, 0x2800, No, 0, false, false},
    {"jmp", Jump, 0x3C00, No, 0, false, false},
    {"jn", Jump, 0x3000, No, 0, false, false},
    {"jnc", Jump, 0x2800, No, 0, false, false},
    {"jne", Jump, 0x2000, No, 0, false, false},
    {"jnz", Jump, 0x2000, No, 0, false, false},
    {"jz", Jump, 0x2400, No, 0, false, false},
    {"mov", TwoOperand, Mov, BW, 0, true, false},
    {"mova", Address, 0x0080, No, 0, false, true},
    {"nop", Fixed, 0x4303, No, 0, false, false},
    {"pop", Pop, Mov, BW, 0, true, false},
    {"popm", PopMultiple, 0x1600, WA, 0, false, true},
    {"push", Push, 0x1200, BW, 0, true, false},
    {"pushm", PushMultiple, 0x1400, WA, 0, false, true},
    {"ret", Fixed, 0x4130, No, 0, false, false},
    {"reta", Fixed, 0x0110, No, 0, false, true},
    {"reti", Fixed, 0x1300, No, 0, false, false},
    {"rla", Twice, Add, BW, 0, true, false},
    {"rlam", RotateMultiple, 0x0240, WA, 0, false, true},
    {"rlc", Twice, Addc, BW, 0, true, false},
    {"rpt", Repeat, 0, No, 0, false, true},
    {"rra", OneOperand, 0x1100, BW, 0, true, false},
    {"rram", RotateMultiple, 0x0140, WA, 0, false, true},
    {"rrc", OneOperand, 0x1000, BW, 0, true, false},
    {"rrcm", RotateMultiple, 0x0040, WA, 0, false, true},
    {"rrum", RotateMultiple, 0x0340, WA, 0, false, true},
    {"rrux", RotateUnsigned, 0x1000, BW, 0, false, true},
    {"sbc", Constant, Subc, BW, 0, true, false},
    {"setc", Fixed, 0xD312, No, 0, false, false},
    {"setn", Fixed, 0xD222, No, 0, false, false},
    {"setz", Fixed, 0xD322, No, 0, false, false},
    {"sub", TwoOperand, Sub, BW, 0, true, false},
    {"suba", Address, 0x00B0, No, 0, false, true},
    {"subc", TwoOperand, Subc, BW, 0, true, false},
    {"swpb", OneOperand, 0x1080, W, 0, true, false},
    {"sxt", OneOperand, 0x1180, W, 0, true, false},
    {"tst", Constant, Cmp, BW, 0, true, false},
    {"tsta", AddressConstant, 0x0090, No, 0, false, true},
    {"xor", TwoOperand, Xor, BW, 0, true, false},
};
static_assert(std::is_sorted(std::begin(Mnemonics), std::end(Mnemonics),
                             [](const auto& a, const auto& b) { return a.name < b.name; }));

} // namespace

const AsmMnemonic* findMnemonic(std::string_view name)
{
    const auto* it = std::lower_bound(
        std::begin(Mnemonics), std::end(Mnemonics), name,
        [](const AsmMnemonic& m, std::string_view text) { return m.name < text; });
    return it != std::end(Mnemonics) && it->name == name ? it : nullptr;
}
