#include "toolchain/kld/TailMerging.h"

#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/msp430/TOBFMSP430Insn.h"

#include <vector>

namespace {

constexpr std::uint32_t RET = 0x4130;
constexpr std::uint32_t RETI = 0x1300;
constexpr std::uint32_t JMP = 0x3C00;
/// A jump takes two bytes, so less than two instructions would gain nothing.
constexpr std::size_t ShortestTail = 2;

using Position = std::list<TOBFInsn*>::iterator;

TOBFMSP430Insn* asInsn(TOBFInsn* insn)
{
    return insn->kind() == TOBFKind::ProcessorInsn ? static_cast<TOBFMSP430Insn*>(insn) : nullptr;
}

bool isReturn(TOBFInsn* insn)
{
    const TOBFMSP430Insn* code = asInsn(insn);
    return code != nullptr && (code->opcode() == RET || code->opcode() == RETI);
}

/// Whether an instruction means the same wherever it stands, and both stand at the same stack
/// depth.
bool areEqual(TOBFInsn* a, TOBFInsn* b)
{
    const TOBFMSP430Insn* left = asInsn(a);
    const TOBFMSP430Insn* right = asInsn(b);
    if (left == nullptr || right == nullptr || left->opcode() != right->opcode()
        || left->formatIII() || left->stackAdjustment() != right->stackAdjustment())
        return false;
    for (int i = 0; i < 2; ++i) {
        const TOBFExpr* first = left->operand(i);
        const TOBFExpr* second = right->operand(i);
        if ((first == nullptr) != (second == nullptr)
            || (first != nullptr && !first->equals(second)))
            return false;
    }
    return true;
}

/// Steps back over source positions; labels, which others may jump to, end a tail.
bool stepBack(std::list<TOBFInsn*>& insns, Position& at)
{
    while (at != insns.begin()) {
        --at;
        if (asInsn(*at) != nullptr)
            return true;
        if ((*at)->kind() != TOBFKind::Locus && (*at)->kind() != TOBFKind::ResetLocusInsn)
            return false;
    }
    return false;
}

struct CommonTail {
    std::size_t length = 0;
    Position first; ///< of the tail that is kept
    Position second;
};

CommonTail findTail(std::list<TOBFInsn*>& insns, Position kept, Position later)
{
    CommonTail tail;
    const Position keptEnd = kept;
    bool more = true;
    while (more && areEqual(*kept, *later) && later != keptEnd) {
        ++tail.length;
        tail.first = kept;
        tail.second = later;
        more = stepBack(insns, kept) && stepBack(insns, later);
    }
    return tail;
}

void replace(TOBFFragment* fragment, const CommonTail& tail, Position end)
{
    std::list<TOBFInsn*>& insns = fragment->insns();
    auto* label = new TOBFMarker;
    label->setFragment(fragment);
    insns.insert(tail.first, label);
    auto* jump = new TOBFMSP430Insn(JMP, new TOBFMarkerExpr(label), nullptr, false);
    jump->setFragment(fragment);
    jump->setLocus((*tail.second)->locus());
    jump->setStackAdjustment((*tail.second)->stackAdjustment());
    insns.insert(tail.second, jump);
    insns.erase(tail.second, std::next(end));
}

} // namespace

void mergeTails(TOBFFragment* fragment)
{
    std::list<TOBFInsn*>& insns = fragment->insns();
    std::vector<Position> kept;
    for (auto it = insns.begin(); it != insns.end();) {
        const Position end = it++;
        if (!isReturn(*end))
            continue;
        CommonTail best;
        for (const Position& candidate : kept) {
            const CommonTail tail = findTail(insns, candidate, end);
            if (tail.length > best.length)
                best = tail;
        }
        if (best.length >= ShortestTail)
            replace(fragment, best, end);
        else
            kept.push_back(end);
    }
}
