#include "objfile/msp430/TOBFMSP430Insn.h"

#include "objfile/format/TOBFWriter.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"

#include <algorithm>
#include <cstdio>

bool g_msp430x = false;

/// A constant that a source field makes without a word behind the instruction.
struct TOBFMSP430Insn::GeneratedConstant {
    unsigned value;
    unsigned field;
};

namespace {

constexpr unsigned JumpConditionMask = 0xFC00;
constexpr unsigned JN = 0x3000;
constexpr unsigned JMP = 0x3C00;
constexpr unsigned MovImmediateToPC = 0x4030;
constexpr unsigned MovaImmediateToPC = 0x0080;
constexpr unsigned PushAtSP = 0x1221;
constexpr unsigned PushByteAtSP = 0x1261;

constexpr TOBFMSP430Insn::GeneratedConstant sourceConstants[] = {
    {0, 0x300}, {1, 0x310}, {2, 0x320}, {4, 0x220}, {8, 0x230}};
constexpr unsigned SourceAllOnes = 0x330;
/// The last two are for the extended core only: an erratum of the original pushes 4 and 8 wrongly.
constexpr TOBFMSP430Insn::GeneratedConstant operandConstants[] = {
    {0, 0x03}, {1, 0x13}, {2, 0x23}, {4, 0x22}, {8, 0x32}};
constexpr unsigned OperandAllOnes = 0x33;

unsigned invertedCondition(unsigned condition)
{
    constexpr unsigned JGE = 0x3400;
    constexpr unsigned JL = 0x3800;
    if (condition == JGE || condition == JL)
        return JGE + JL - condition;
    return condition ^ 0x0400; // JNZ and JZ, JNC and JC
}

unsigned high4(unsigned value) { return value >> 16 & 0xF; }

bool isPlainConstant(const TOBFValue& value) { return !value.failed && value.codelet == -1; }

} // namespace

TOBFMSP430Insn::TOBFMSP430Insn(std::uint32_t opcode, TOBFExpr* first, TOBFExpr* second,
                               bool optimise)
    : TOBFProcessorInsn(opcode, first, second)
{
    if (optimise)
        selectConstant();
}

std::string TOBFMSP430Insn::printPC()
{
    char text[16];
    std::snprintf(text, sizeof text, "%06X", static_cast<unsigned>(pc()));
    return text;
}

// Constant selection.

void TOBFMSP430Insn::selectConstant()
{
    if (m_opcode == PushAtSP || m_opcode == PushByteAtSP) {
        setOperand(0, new TOBFConstExpr(0));
        m_opcode -= 0x10;
    } else if (formatI() && operand(0) != nullptr && (m_opcode & 0xF30) == 0x30) {
        selectGenerated(0xF30, SourceAllOnes, sourceConstants);
    } else if (formatII() && operand(0) != nullptr && !hasExtension()
               && (m_opcode & 0x3F) == 0x30) {
        selectGenerated(0x3F, OperandAllOnes, std::span(operandConstants).first(g_msp430x ? 5 : 3));
    }
}

namespace {

unsigned sizeMask(std::uint32_t opcode)
{
    if (opcode >> 16 < 0x1800)
        return (opcode & 0x40) != 0 ? 0xFF : 0xFFFF;
    switch (opcode & 0x400040) {
    case 0x40: return 0xFFFFF;
    case 0: return 0xFFFFFFFF;
    case 0x400000: return 0xFFFF;
    default: return 0xFF;
    }
}

} // namespace

void TOBFMSP430Insn::selectGenerated(std::uint32_t fieldMask, std::uint32_t allOnes,
                                     std::span<const GeneratedConstant> constants)
{
    const TOBFValue value = operand(0)->evaluate();
    if (!isPlainConstant(value) || value.section != nullptr)
        return;
    const unsigned mask = sizeMask(m_opcode);
    const unsigned masked = static_cast<unsigned>(value.value) & mask;
    const auto it = std::find_if(constants.begin(), constants.end(),
                                 [=](const auto& constant) { return constant.value == masked; });
    if (masked != mask && it == constants.end())
        return;
    m_opcode = (m_opcode & ~fieldMask) | (masked == mask ? allOnes : it->field);
    setOperand(0, nullptr);
}

// Length and relaxation.

int TOBFMSP430Insn::length()
{
    if (hasLegacyHighHalf())
        return 6;
    if (formatIII() && !hasExtension())
        return 2;
    const int operands = (operand(0) != nullptr ? 2 : 0) + (operand(1) != nullptr ? 2 : 0);
    return (hasExtension() ? 4 : 2) + operands;
}

unsigned TOBFMSP430Insn::jumpOffset(unsigned mask) const
{
    const std::int64_t distance = operand(0)->evaluate().value - pc() - 2;
    return static_cast<unsigned>(distance >> 1) & mask;
}

int TOBFMSP430Insn::estimatedLength()
{
    if (!formatIII() || hasExtension() || operand(0) == nullptr)
        return length();
    const unsigned offset = jumpOffset(0xFFFF);
    if (offset <= 0x1FF || offset >= 0xFE00)
        return 2;
    switch (m_opcode & JumpConditionMask) {
    case JMP: return 4;
    case JN: return 8;
    default: return 6;
    }
}

int TOBFMSP430Insn::recode(std::list<TOBFInsn*>& list, std::list<TOBFInsn*>::iterator& position)
{
    if (!formatIII() || hasExtension() || operand(0) == nullptr)
        return 0;
    const unsigned offset = jumpOffset(g_msp430x ? 0xFFFFF : 0xFFFF);
    if (offset <= 0x1FF || offset >= (g_msp430x ? 0xFFE00u : 0xFE00u))
        return 0;

    const unsigned condition = m_opcode & JumpConditionMask;
    if (condition == JMP) {
        m_opcode = g_msp430x ? MovaImmediateToPC : MovImmediateToPC;
        return 1;
    }
    const auto insert = [&](TOBFInsn* insn) {
        insn->setFragment(fragment());
        position = list.insert(std::next(position), insn);
    };
    const auto jumpTo = [](TOBFExpr* target) {
        return new TOBFMSP430Insn(JMP, target, nullptr, false);
    };
    TOBFExpr* const target = operand(0);
    auto* const first = new TOBFMarker;
    setOperand(0, new TOBFMarkerExpr(first));
    if (condition == JN) {
        auto* const second = new TOBFMarker;
        insert(jumpTo(new TOBFMarkerExpr(second)));
        insert(first);
        insert(jumpTo(target));
        insert(second);
    } else {
        m_opcode = invertedCondition(condition) | (m_opcode & ~JumpConditionMask);
        insert(jumpTo(target));
        insert(first);
    }
    return 1;
}

// Encoding.

unsigned TOBFMSP430Insn::operandValue(int index) const
{
    return static_cast<unsigned>(operand(index)->evaluate().value);
}

unsigned TOBFMSP430Insn::relativeTo(unsigned value, int bytesBefore) const
{
    return value - static_cast<unsigned>(pc() + bytesBefore);
}

void TOBFMSP430Insn::encode()
{
    clearBytes();
    if (hasExtension())
        encodeOperands();
    else if ((m_opcode & 0xFFF0) == 0x1380 || (m_opcode & 0xFFF0) == 0x1390
             || (m_opcode & 0xFFF0) == 0x13B0)
        encodeCallForm();
    else if (word() <= 0x0FFF)
        encodeAddressForm();
    else if (formatIII())
        encodeWord16(operand(0) == nullptr ? m_opcode : m_opcode + (jumpOffset(0x3FF)));
    else
        encodeOperands();
}

void TOBFMSP430Insn::encodeCallForm()
{
    unsigned value = operand(0) != nullptr ? operandValue(0) : 0;
    if ((m_opcode & 0xFFF0) == 0x1390)
        value = relativeTo(value, 2);
    encodeWord16(m_opcode | high4(value));
    encodeWord16(value & 0xFFFF);
}

void TOBFMSP430Insn::encodeAddressForm()
{
    const int index = operand(1) != nullptr ? 1 : 0;
    const unsigned value = operand(index) != nullptr ? operandValue(index) : 0;
    switch (m_opcode & 0xF0) {
    case 0x20:
    case 0x80:
    case 0x90:
    case 0xA0:
    case 0xB0:
        encodeWord16(m_opcode | high4(value) << 8);
        encodeWord16(value & 0xFFFF);
        break;
    case 0x60:
        encodeWord16(m_opcode | high4(value));
        encodeWord16(value & 0xFFFF);
        break;
    case 0x30:
    case 0x70:
        encodeWord16(m_opcode);
        encodeWord16(value & 0xFFFF);
        break;
    default: encodeWord16(m_opcode); break;
    }
}

bool TOBFMSP430Insn::isRelative(int index) const
{
    if (index == 1)
        return formatI() && (m_opcode & 0x8F) == 0x80;
    return formatI() ? (m_opcode & 0xF30) == 0x10 : formatII() && (m_opcode & 0x3F) == 0x10;
}

/// One- and two-operand forms, with or without an extension word.
void TOBFMSP430Insn::encodeOperands()
{
    unsigned extension = m_opcode >> 16;
    int bytes = hasExtension() ? 4 : 2;
    unsigned first = 0;
    unsigned second = 0;
    if (operand(0) != nullptr) {
        first = isRelative(0) ? relativeTo(operandValue(0), bytes) : operandValue(0);
        extension |= high4(first) << 7;
        bytes += 2;
    }
    if (operand(1) != nullptr) {
        second = isRelative(1) ? relativeTo(operandValue(1), bytes) : operandValue(1);
        extension |= high4(second);
    }
    if (hasExtension())
        encodeWord16(extension);
    encodeWord16(word());
    if (operand(0) != nullptr)
        encodeWord16(first);
    if (operand(1) != nullptr)
        encodeWord16(second);
}

void TOBFMSP430Insn::encodeBranch(unsigned value)
{
    value &= g_msp430x ? 0xFFFFF : 0xFFFF;
    if (value > 0xFFFF)
        encodeWord16(MovaImmediateToPC | high4(value) << 8);
    else
        encodeWord16(MovImmediateToPC);
    encodeWord16(value & 0xFFFF);
}

void TOBFMSP430Insn::externalize(TOBFWriter* writer)
{
    writeCommon(writer);
    if (operand(0) == nullptr && operand(1) == nullptr) {
        writer->externalizeTag(TAG_NULL_NULL);
    } else {
        for (int i = 0; i < 2; ++i) {
            if (operand(i) != nullptr)
                operand(i)->externalize(writer);
            else
                writer->externalizeTag(TAG_NULL);
        }
    }
    writer->externalizeLiteral(m_opcode);
    writer->externalizeTag(isHidden() ? TAG_HIDDEN_INSN : TAG_INSN);
    if (extensionWord() != 0) {
        writer->externalizeLiteral(extensionWord());
        writer->externalizeTag(TAG_EXTENSION_WORD);
    }
    writeBytes(writer);
}
