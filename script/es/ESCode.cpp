#include "script/es/ESCode.h"

#include "script/es/ESVmOpcode.h"

#include <array>
#include <bit>

int ESCode::number(double value)
{
    for (std::size_t i = 0; i < numbers.size(); ++i)
        if (std::bit_cast<std::uint64_t>(numbers[i]) == std::bit_cast<std::uint64_t>(value))
            return static_cast<int>(i);
    numbers.push_back(value);
    return static_cast<int>(numbers.size()) - 1;
}

const ESOpcodeInfo* esOpcodeInfo(std::uint8_t opcode)
{
    static const auto table = [] {
        std::array<ESOpcodeInfo, 256> infos = {};
        const auto enter = [&](const char* mnemonic, int value, ESOperand operand) {
            infos[static_cast<std::size_t>(value)] = {mnemonic, operand};
        };
#define ES_OPCODE(name, value, operand) enter(#name, value, ESOperand::operand);
        ES_OPCODES(ES_OPCODE)
#undef ES_OPCODE
        // Those that C++ has other uses for.
        enter("NULL", 0x07, ESOperand::None);
        enter("TRUE", 0x08, ESOperand::None);
        enter("FALSE", 0x09, ESOperand::None);
        enter("VOID", 0x11, ESOperand::None);
        return infos;
    }();
    return table[opcode].mnemonic ? &table[opcode] : nullptr;
}
