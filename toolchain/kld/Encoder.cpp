#include "toolchain/kld/Encoder.h"

#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/msp430/TOBFMSP430Insn.h"

#include <cstdio>

namespace {

std::string hex(std::int64_t value)
{
    char text[32];
    std::snprintf(text, sizeof text, "0x%llX", static_cast<unsigned long long>(value));
    return text;
}

/// Words that hold 20 bits of an operand: those with an extension word and the address instructions.
bool holdsWideOperand(const TOBFInsn* insn)
{
    const std::uint32_t opcode = static_cast<const TOBFMSP430Insn*>(insn)->opcode();
    return opcode >> 16 >= 0x1800 || (opcode & 0xFFFF) <= 0x0FFF || (opcode & 0xFF00) == 0x1300;
}

class Checker {
public:
    explicit Checker(LinkImage& image) : m_image(image) {}

    void check(TOBFInsn* insn, TOBFExpr* operand)
    {
        const TOBFValue value = operand->evaluate();
        if (value.failed) {
            report(insn, value.message.empty() ? "bad operand" : value.message);
            return;
        }
        const bool isInsn = insn->kind() == TOBFKind::ProcessorInsn;
        const bool wide = isInsn && holdsWideOperand(insn);
        const bool fits = wide ? value.value >= -0x80000 && value.value <= 0xFFFFF
                               : value.value >= -0x8000 && value.value <= 0xFFFF;
        const bool isAddress = insn->kind() == TOBFKind::DefAddrInsn;
        if ((isInsn || isAddress) && !fits)
            report(insn, hex(value.value) + ", " + operand->printString()
                             + (wide ? ", doesn't fit in 20 bits" : ", doesn't fit in 16 bits"));
    }

private:
    void report(TOBFInsn* insn, const std::string& what)
    {
        const TOBFLocus* locus = insn->locus();
        SourceLocation where;
        if (locus != nullptr && locus->filename()->file() != nullptr)
            where = {locus->filename()->file()->str(), locus->line()};
        m_image.diagnostics().error(where, what + ", in " + m_image.nameOf(insn->fragment()));
    }

    LinkImage& m_image;
};

} // namespace

void encodeImage(LinkImage& image)
{
    Checker checker(image);
    for (TOBFSection* section : image.module()->sections()) {
        for (TOBFFragment* fragment : section->fragments()) {
            for (TOBFInsn* insn : fragment->insns()) {
                const TOBFKind kind = insn->kind();
                const bool hasValue = kind == TOBFKind::ProcessorInsn
                    || kind == TOBFKind::DefBytesInsn || kind == TOBFKind::DefAddrInsn;
                if (!hasValue)
                    continue;
                for (int i = 0; i < 2; ++i)
                    if (insn->operand(i) != nullptr)
                        checker.check(insn, insn->operand(i));
                insn->encode();
            }
        }
        section->invalidateMetrics();
    }
}
