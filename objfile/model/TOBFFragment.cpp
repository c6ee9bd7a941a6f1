#include "objfile/model/TOBFFragment.h"

#include "objfile/model/TOBFMarker.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

TOBFLocus* TOBFFragment::s_lastLocus = nullptr;

void TOBFFragment::addInsn(TOBFInsn* insn)
{
    if (insn == nullptr) {
        std::fputs("internal error: a null item was added to a fragment\n", stderr);
        std::abort();
    }
    m_insns.push_back(insn);
    insn->setFragment(this);
}

/// Fragments refer to each other in long chains, so the outermost walk keeps a list of those still
/// to do instead of descending into each.
void TOBFFragment::markReachable(bool reachable)
{
    static std::vector<TOBFFragment*> pending;
    static bool walking = false;
    if (!mark(reachable))
        return;
    pending.push_back(this);
    if (walking)
        return;
    walking = true;
    try {
        while (!pending.empty()) {
            TOBFFragment* next = pending.back();
            pending.pop_back();
            next->markItems();
        }
    } catch (...) {
        pending.clear();
        walking = false;
        throw;
    }
    walking = false;
}

void TOBFFragment::markItems()
{
    TOBFLocus* const outer = s_lastLocus;
    s_lastLocus = nullptr;
    for (TOBFInsn* insn : m_insns) {
        if (insn->kind() == TOBFKind::Locus)
            s_lastLocus = static_cast<TOBFLocus*>(insn);
        insn->markReachable(m_reachable);
    }
    s_lastLocus = outer;
}
