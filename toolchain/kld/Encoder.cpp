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

/// How many bits of an operand the item holds; 0 for a jump, which was made to reach.
int operandBits(const TOBFInsn* item)
{
    if (item->kind() == TOBFKind::DefAddrInsn)
        return 16;
    if (item->kind() != TOBFKind::ProcessorInsn)
        return 0;
    const auto* insn = static_cast<const TOBFMSP430Insn*>(item);
    const std::uint32_t opcode = insn->opcode();
    if (insn->formatIII())
        return 0;
    const bool wide =
        opcode >> 16 >= 0x1800 || (opcode & 0xFFFF) <= 0x0FFF || (opcode & 0xFF80) == 0x1380;
    return wide ? 20 : 16;
}

/// What is put into the operand's word: a distance where the mode counts from the program counter.
std::int64_t storedValue(const TOBFInsn* item, int index, std::int64_t value)
{
    const bool isRelative = item->kind() == TOBFKind::ProcessorInsn
        && static_cast<const TOBFMSP430Insn*>(item)->isRelative(index);
    return isRelative ? value - item->pc() : value;
}

class Checker {
public:
    explicit Checker(LinkImage& image) : m_image(image) { }

    void check(TOBFInsn* insn, int index)
    {
        TOBFExpr* operand = insn->operand(index);
        const TOBFValue value = operand->evaluate();
        if (value.failed) {
            report(insn, value.message.empty() ? "bad operand" : value.message);
            return;
        }
        const int bits = operandBits(insn);
        const std::int64_t stored = storedValue(insn, index, value.value);
        const std::int64_t limit = std::int64_t{1} << bits;
        if (bits != 0 && (stored < -limit / 2 || stored >= limit))
            report(insn,
                   hex(value.value) + ", " + operand->printString() + ", doesn't fit in "
                       + std::to_string(bits) + " bits");
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
                        checker.check(insn, i);
                insn->encode();
            }
        }
        section->invalidateMetrics();
    }
}
