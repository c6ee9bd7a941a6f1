#include "toolchain/kld/Optimizations.h"

#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/msp430/TOBFMSP430Insn.h"
#include "toolchain/kld/TailMerging.h"

#include <map>

namespace {

constexpr std::uint32_t MovImmediateToPC = 0x4030;
constexpr std::uint32_t JMP = 0x3C00;

using Insns = std::list<TOBFInsn*>;

TOBFMSP430Insn* asInsn(TOBFInsn* insn)
{
    return insn->kind() == TOBFKind::ProcessorInsn ? static_cast<TOBFMSP430Insn*>(insn) : nullptr;
}

/// Runs `change` on every fragment that holds code.
template <typename Function> void forEachCode(LinkImage& image, Function change)
{
    for (TOBFSection* section : image.module()->sections())
        if (section->sectionKind() == SectionKind::Code)
            for (TOBFFragment* fragment : section->fragments())
                change(fragment);
}

/// Only to labels and symbols: a jump to a fixed address could not be told to be in reach.
bool isPlaced(const TOBFExpr* target)
{
    return target->kind() == TOBFKind::MarkerExpr || target->kind() == TOBFKind::SymbolExpr;
}

void shortenBranches(TOBFFragment* fragment)
{
    for (TOBFInsn*& it : fragment->insns()) {
        const TOBFMSP430Insn* insn = asInsn(it);
        if (insn == nullptr || insn->opcode() != MovImmediateToPC || insn->operand(0) == nullptr
            || !isPlaced(insn->operand(0)))
            continue;
        auto* jump = new TOBFMSP430Insn(JMP, insn->operand(0), nullptr, false);
        jump->setFragment(fragment);
        jump->setLocus(insn->locus());
        jump->setStackAdjustment(insn->stackAdjustment());
        it = jump;
    }
}

/// Where the jump behind each label leads, for labels that an unconditional jump stands behind.
std::map<const TOBFMarker*, TOBFExpr*> jumpsBehindLabels(TOBFFragment* fragment)
{
    std::map<const TOBFMarker*, TOBFExpr*> result;
    std::vector<const TOBFMarker*> labels;
    for (TOBFInsn* insn : fragment->insns()) {
        if (insn->kind() == TOBFKind::Marker) {
            labels.push_back(static_cast<TOBFMarker*>(insn));
            continue;
        }
        const TOBFMSP430Insn* code = asInsn(insn);
        if (code == nullptr)
            continue;
        if (code->opcode() == JMP && code->operand(0) != nullptr)
            for (const TOBFMarker* label : labels)
                result[label] = code->operand(0);
        labels.clear();
    }
    return result;
}

const TOBFMarker* labelOf(const TOBFExpr* target)
{
    return target->kind() == TOBFKind::MarkerExpr
        ? static_cast<const TOBFMarkerExpr*>(target)->marker()
        : nullptr;
}

void threadJumps(TOBFFragment* fragment)
{
    constexpr int LongestChain = 32; // jumps may also go round in a circle
    const auto behind = jumpsBehindLabels(fragment);
    for (TOBFInsn* it : fragment->insns()) {
        TOBFMSP430Insn* insn = asInsn(it);
        if (insn == nullptr || !insn->formatIII() || insn->operand(0) == nullptr)
            continue;
        TOBFExpr* target = insn->operand(0);
        for (int i = 0; i < LongestChain; ++i) {
            const auto found = behind.find(labelOf(target));
            if (found == behind.end())
                break;
            target = found->second;
        }
        insn->setOperand(0, target);
    }
}

} // namespace

void optimize(LinkImage& image)
{
    if (image.options().peepholes)
        forEachCode(image, shortenBranches);
    if (image.options().jumpThreading)
        forEachCode(image, threadJumps);
    if (image.options().tailMerging)
        forEachCode(image, mergeTails);
}
