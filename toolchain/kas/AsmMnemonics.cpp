#include "toolchain/kas/AsmMnemonics.h"

#include "objfile/msp430/MSP430Instructions.h"

#include <algorithm>
#include <iterator>

// Emulated instructions: MSP430x2xx (SLAU144) and MSP430x5xx (SLAU208) family guides, chapters
// "CPU" and "CPUX".

namespace {

using enum AsmShape;

constexpr AsmSizes BW = AsmSizes::ByteWord;
constexpr AsmSizes W = AsmSizes::Word;
constexpr AsmSizes WA = AsmSizes::WordAddress;
constexpr AsmSizes No = AsmSizes::None;

using Operation = MSP430Operation;

constexpr std::uint16_t Mov = msp430OpcodeOf(Operation::Mov), Add = msp430OpcodeOf(Operation::Add),
                        Addc = msp430OpcodeOf(Operation::Addc),
                        Subc = msp430OpcodeOf(Operation::Subc),
                        Sub = msp430OpcodeOf(Operation::Sub), Cmp = msp430OpcodeOf(Operation::Cmp),
                        Dadd = msp430OpcodeOf(Operation::Dadd),
                        Bit = msp430OpcodeOf(Operation::Bit), Bic = msp430OpcodeOf(Operation::Bic),
                        Bis = msp430OpcodeOf(Operation::Bis), Xor = msp430OpcodeOf(Operation::Xor),
                        And = msp430OpcodeOf(Operation::And);
constexpr std::uint16_t Mova = msp430OpcodeOf(Operation::MovaImmediate),
                        Adda = msp430OpcodeOf(Operation::AddaImmediate),
                        Suba = msp430OpcodeOf(Operation::SubaImmediate),
                        Cmpa = msp430OpcodeOf(Operation::CmpaImmediate);
constexpr std::uint16_t Jne = msp430OpcodeOf(Operation::Jne), Jeq = msp430OpcodeOf(Operation::Jeq),
                        Jnc = msp430OpcodeOf(Operation::Jnc), Jc = msp430OpcodeOf(Operation::Jc);
constexpr std::uint16_t Rrc = msp430OpcodeOf(Operation::Rrc);

/// Sorted by name.
constexpr AsmMnemonic Mnemonics[] = {
    {"adc", Constant, Addc, BW, 0, true, false},
    {"add", TwoOperand, Add, BW, 0, true, false},
    {"adda", Address, Adda, No, 0, false, true},
    {"addc", TwoOperand, Addc, BW, 0, true, false},
    {"and", TwoOperand, And, BW, 0, true, false},
    {"bic", TwoOperand, Bic, BW, 0, true, false},
    {"bis", TwoOperand, Bis, BW, 0, true, false},
    {"bit", TwoOperand, Bit, BW, 0, true, false},
    {"br", Branch, Mov, No, 0, false, false},
    {"bra", AddressBranch, Mova, No, 0, false, true},
    {"call", Call, msp430OpcodeOf(Operation::Call), No, 0, false, false},
    {"calla", AddressCall, msp430OpcodeOf(Operation::CallaSource), No, 0, false, true},
    {"clr", Constant, Mov, BW, 0, true, false},
    {"clra", AddressConstant, Mova, No, 0, false, true},
    {"clrc", Fixed, 0xC312, No, 0, false, false},
    {"clrn", Fixed, 0xC222, No, 0, false, false},
    {"clrz", Fixed, 0xC322, No, 0, false, false},
    {"cmp", TwoOperand, Cmp, BW, 0, true, false},
    {"cmpa", Address, Cmpa, No, 0, false, true},
    {"dadc", Constant, Dadd, BW, 0, true, false},
    {"dadd", TwoOperand, Dadd, BW, 0, true, false},
    {"dec", Constant, Sub, BW, 1, true, false},
    {"decd", Constant, Sub, BW, 2, true, false},
    {"decda", AddressConstant, Suba, No, 2, false, true},
    {"dint", Fixed, 0xC232, No, 0, false, false},
    {"eint", Fixed, 0xD232, No, 0, false, false},
    {"inc", Constant, Add, BW, 1, true, false},
    {"incd", Constant, Add, BW, 2, true, false},
    {"incda", AddressConstant, Adda, No, 2, false, true},
    {"inv", Constant, Xor, BW, -1, true, false},
    {"jc", Jump, Jc, No, 0, false, false},
    {"jeq", Jump, Jeq, No, 0, false, false},
    {"jge", Jump, msp430OpcodeOf(Operation::Jge), No, 0, false, false},
    {"jhs", Jump, Jc, No, 0, false, false},
    {"jl", Jump, msp430OpcodeOf(Operation::Jl), No, 0, false, false},
    {"jlo", Jump, Jnc, No, 0, false, false},
    {"jmp", Jump, msp430OpcodeOf(Operation::Jmp), No, 0, false, false},
    {"jn", Jump, msp430OpcodeOf(Operation::Jn), No, 0, false, false},
    {"jnc", Jump, Jnc, No, 0, false, false},
    {"jne", Jump, Jne, No, 0, false, false},
    {"jnz", Jump, Jne, No, 0, false, false},
    {"jz", Jump, Jeq, No, 0, false, false},
    {"mov", TwoOperand, Mov, BW, 0, true, false},
    {"mova", Address, Mova, No, 0, false, true},
    {"nop", Fixed, 0x4303, No, 0, false, false},
    {"pop", Pop, Mov, BW, 0, true, false},
    {"popm", PopMultiple, msp430OpcodeOf(Operation::PopmA), WA, 0, false, true},
    {"push", Push, msp430OpcodeOf(Operation::Push), BW, 0, true, false},
    {"pushm", PushMultiple, msp430OpcodeOf(Operation::PushmA), WA, 0, false, true},
    {"ret", Fixed, 0x4130, No, 0, false, false, true},
    {"reta", Fixed, 0x0110, No, 0, false, true, true},
    {"reti", Fixed, msp430OpcodeOf(Operation::Reti), No, 0, false, false, true},
    {"rla", Twice, Add, BW, 0, true, false},
    {"rlam", RotateMultiple, msp430OpcodeOf(Operation::Rlam), WA, 0, false, true},
    {"rlc", Twice, Addc, BW, 0, true, false},
    {"rpt", Repeat, 0, No, 0, false, true},
    {"rra", OneOperand, msp430OpcodeOf(Operation::Rra), BW, 0, true, false},
    {"rram", RotateMultiple, msp430OpcodeOf(Operation::Rram), WA, 0, false, true},
    {"rrc", OneOperand, Rrc, BW, 0, true, false},
    {"rrcm", RotateMultiple, msp430OpcodeOf(Operation::Rrcm), WA, 0, false, true},
    {"rrum", RotateMultiple, msp430OpcodeOf(Operation::Rrum), WA, 0, false, true},
    {"rrux", RotateUnsigned, Rrc, BW, 0, false, true},
    {"sbc", Constant, Subc, BW, 0, true, false},
    {"setc", Fixed, 0xD312, No, 0, false, false},
    {"setn", Fixed, 0xD222, No, 0, false, false},
    {"setz", Fixed, 0xD322, No, 0, false, false},
    {"sub", TwoOperand, Sub, BW, 0, true, false},
    {"suba", Address, Suba, No, 0, false, true},
    {"subc", TwoOperand, Subc, BW, 0, true, false},
    {"swpb", OneOperand, msp430OpcodeOf(Operation::Swpb), W, 0, true, false},
    {"sxt", OneOperand, msp430OpcodeOf(Operation::Sxt), W, 0, true, false},
    {"tst", Constant, Cmp, BW, 0, true, false},
    {"tsta", AddressConstant, Cmpa, No, 0, false, true},
    {"xor", TwoOperand, Xor, BW, 0, true, false},
};
static_assert(std::is_sorted(std::begin(Mnemonics), std::end(Mnemonics),
                             [](const auto& a, const auto& b) { return a.name < b.name; }));

} // namespace

const AsmMnemonic* findMnemonic(std::string_view name)
{
    const auto* it =
        std::lower_bound(std::begin(Mnemonics), std::end(Mnemonics), name,
                         [](const AsmMnemonic& m, std::string_view text) { return m.name < text; });
    return it != std::end(Mnemonics) && it->name == name ? it : nullptr;
}
