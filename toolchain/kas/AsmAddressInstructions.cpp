// The instructions on 20-bit addresses and on several registers.

#include "objfile/model/TOBFExpr.h"
#include "objfile/msp430/MSP430Instructions.h"
#include "toolchain/kas/AsmField.h"
#include "toolchain/kas/AsmInstructions.h"
#include "toolchain/kas/AsmLine.h"

namespace {

constexpr int PC = 0;

using Operation = MSP430Operation;

constexpr unsigned MoveImmediate = msp430OpcodeOf(Operation::MovaImmediate);
/// What turns the immediate form of an address instruction into that between registers.
constexpr unsigned RegisterForm = msp430OpcodeOf(Operation::Mova) - MoveImmediate;
/// What turns the 20-bit form of an instruction on several registers into that on words.
constexpr unsigned WordForm = msp430OpcodeOf(Operation::PushmW) - msp430OpcodeOf(Operation::PushmA);
constexpr unsigned RotateWordForm = 0x0010;

using AsmField::Addresses;
using AsmField::bits;
using AsmField::requireRange;
using AsmField::Words;

constexpr unsigned opcode(Operation operation) { return msp430OpcodeOf(operation); }

} // namespace

void AsmInstructions::address(const Form& form, const AsmOperand& source,
                              const AsmOperand& destination)
{
    const unsigned opcode = form.mnemonic->opcode;
    const bool toRegister = destination.mode == AsmOperand::Register;
    if (source.mode == AsmOperand::Immediate)
        requireRange(source.value, Addresses, "value");
    if (toRegister && source.mode == AsmOperand::Immediate)
        return emit(opcode | bits(destination.reg), source.value, nullptr,
                    opcode == MoveImmediate && destination.reg == PC);
    if (toRegister && source.mode == AsmOperand::Register)
        return emit(opcode | RegisterForm | bits(source.reg, 8) | bits(destination.reg), nullptr,
                    nullptr, opcode == MoveImmediate && destination.reg == PC);
    if (opcode != MoveImmediate)
        throw AsmError{"'" + std::string(form.mnemonic->name)
                       + "' takes a register or a value, and a register"};
    move(source, destination);
}

void AsmInstructions::move(const AsmOperand& source, const AsmOperand& destination)
{
    const auto distance = [&](const AsmOperand& operand) {
        TOBFExpr* value =
            operand.mode == AsmOperand::Symbolic ? addressDistance(operand) : operand.value;
        requireRange(value, Words, "offset");
        return value;
    };
    if (destination.mode == AsmOperand::Register) {
        const unsigned to = bits(destination.reg);
        const bool transfer = destination.reg == PC;
        const unsigned from = bits(source.reg, 8);
        switch (source.mode) {
        case AsmOperand::Indirect:
            return emit(opcode(Operation::MovaIndirect) | from | to, nullptr, nullptr, transfer);
        case AsmOperand::Increment:
            return emit(opcode(Operation::MovaIncrement) | from | to, nullptr, nullptr, transfer);
        case AsmOperand::Absolute:
            requireRange(source.value, Addresses, "address");
            return emit(opcode(Operation::MovaFromAbsolute) | to, source.value, nullptr, transfer);
        default:
            return emit(opcode(Operation::MovaFromIndexed) | from | to, distance(source), nullptr,
                        transfer);
        }
    }
    if (source.mode != AsmOperand::Register)
        throw AsmError{"'mova' takes a register on one side"};
    switch (destination.mode) {
    case AsmOperand::Absolute:
        requireRange(destination.value, Addresses, "address");
        return emit(opcode(Operation::MovaToAbsolute) | bits(source.reg, 8), nullptr,
                    destination.value);
    case AsmOperand::Indirect:
        return emit(opcode(Operation::MovaToIndexed) | bits(source.reg, 8) | bits(destination.reg),
                    nullptr, new TOBFConstExpr(0));
    case AsmOperand::Immediate:
    case AsmOperand::Increment: throw AsmError{"operand can't be a destination"};
    default:
        return emit(opcode(Operation::MovaToIndexed) | bits(source.reg, 8) | bits(destination.reg),
                    nullptr, distance(destination));
    }
}

/// The distance of an address from the word that holds it, behind the instruction word.
TOBFExpr* AsmInstructions::addressDistance(const AsmOperand& operand)
{
    TOBFExpr* word = TOBFBinaryExpr::make(TAG_ADD, m_expressions.here(), new TOBFConstExpr(2));
    return TOBFBinaryExpr::make(TAG_SUB, operand.value, word);
}

void AsmInstructions::addressCall(const AsmOperand& operand)
{
    switch (operand.mode) {
    case AsmOperand::Immediate:
        requireRange(operand.value, Addresses, "value");
        return emit(opcode(Operation::CallaImmediate), operand.value);
    case AsmOperand::Absolute:
        requireRange(operand.value, Addresses, "address");
        return emit(opcode(Operation::CallaAbsolute), operand.value);
    case AsmOperand::Symbolic: return emit(opcode(Operation::CallaRelative), operand.value);
    case AsmOperand::Relative:
        return emit(opcode(Operation::CallaRelative), relativeWord(operand, 2));
    case AsmOperand::Indexed:
        requireRange(operand.value, Words, "offset");
        return emit(opcode(Operation::CallaSource) | 1 << 4 | bits(operand.reg), operand.value);
    case AsmOperand::Register: return emit(opcode(Operation::CallaSource) | bits(operand.reg));
    case AsmOperand::Indirect:
        return emit(opcode(Operation::CallaSource) | 2 << 4 | bits(operand.reg));
    case AsmOperand::Increment:
        return emit(opcode(Operation::CallaSource) | 3 << 4 | bits(operand.reg));
    }
}

/// PUSHM and POPM of up to 16 registers, and the rotations by up to 4 bits.
void AsmInstructions::multiple(const Form& form)
{
    const AsmShape shape = form.mnemonic->shape;
    const bool rotate = shape == AsmShape::RotateMultiple;
    const std::int64_t count = countOperand(rotate ? 4 : 16);
    m_tokens->expect(",");
    const int reg = parseRegister(*m_tokens);
    const auto field = static_cast<unsigned>(count - 1);
    const bool word = form.size == Size::Word;
    if (rotate)
        return emit(form.mnemonic->opcode | (word ? RotateWordForm : 0) | field << 10 | bits(reg));
    if (count > reg + 1)
        throw AsmError{"there are not that many registers from 'R" + std::to_string(reg)
                       + "' down"};
    // POPM names the last register that is filled and encodes the first.
    const int first = shape == AsmShape::PopMultiple ? reg - static_cast<int>(count) + 1 : reg;
    emit(form.mnemonic->opcode | (word ? WordForm : 0) | field << 4 | bits(first));
}
