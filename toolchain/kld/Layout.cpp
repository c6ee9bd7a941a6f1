#include "toolchain/kld/Layout.h"

#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/msp430/TOBFMSP430Insn.h"
#include "toolchain/kld/LinkerSymbols.h"

#include <algorithm>
#include <set>

namespace {

constexpr std::uint32_t LargestFragment = 0x100000;

/// Where to measure a fragment: any alignment begins here.
constexpr std::uint32_t Nowhere = 0;

bool isRam(const TOBFSection* section)
{
    return section->sectionKind() == SectionKind::Data
        || section->sectionKind() == SectionKind::Zeroed;
}

/// The largest alignment that the fragment asks for; code stands at even addresses.
std::uint32_t alignmentOf(TOBFFragment* fragment)
{
    std::uint32_t alignment = 1;
    for (TOBFInsn* insn : fragment->insns()) {
        if (insn->kind() == TOBFKind::ProcessorInsn)
            alignment = std::max(alignment, 2u);
        else if (insn->kind() == TOBFKind::AlignInsn) {
            const auto wanted =
                static_cast<std::uint32_t>(static_cast<TOBFAlignInsn*>(insn)->alignment());
            alignment = std::max(alignment, wanted);
        }
    }
    return alignment;
}

/// Gives the items addresses from `start` on and returns the size in bytes.
std::uint32_t assign(TOBFFragment* fragment, std::uint32_t start)
{
    std::uint64_t at = start;
    for (TOBFInsn* insn : fragment->insns()) {
        insn->setPC(static_cast<long>(at));
        at += static_cast<std::uint64_t>(std::max(insn->length(), 0));
        if (at - start > LargestFragment)
            return LargestFragment;
    }
    return static_cast<std::uint32_t>(at - start);
}

/// Layout counts on alignments that divide each other.
bool hasGoodAlignments(TOBFFragment* fragment)
{
    constexpr unsigned Largest = 0x10000;
    for (TOBFInsn* insn : fragment->insns()) {
        if (insn->kind() != TOBFKind::AlignInsn)
            continue;
        const auto wanted = static_cast<unsigned>(static_cast<TOBFAlignInsn*>(insn)->alignment());
        if (wanted == 0 || (wanted & (wanted - 1)) != 0 || wanted > Largest)
            return false;
    }
    return true;
}

const TOBFOriginInsn* originOf(TOBFFragment* fragment)
{
    for (TOBFInsn* insn : fragment->insns())
        if (insn->kind() == TOBFKind::OriginInsn)
            return static_cast<TOBFOriginInsn*>(insn);
    return nullptr;
}

std::string hex(std::uint32_t value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%04X", value);
    return text;
}

} // namespace

bool Layout::run()
{
    if (!checkAlignments())
        return false;
    bool changed = true;
    while (changed && m_passes < MostPasses) {
        ++m_passes;
        changed = place();
        if (m_failed)
            return false;
        changed = relax() || changed;
    }
    return true;
}

bool Layout::checkAlignments()
{
    for (TOBFSection* section : m_image.module()->sections())
        for (TOBFFragment* fragment : section->fragments())
            if (!hasGoodAlignments(fragment)) {
                m_failed = true;
                m_image.diagnostics().error(m_image.nameOf(fragment)
                                            + " has an alignment that is no power of two");
            }
    return !m_failed;
}

/// One pass over all sections. Data comes first, since the size of its image depends on it. True if
/// an address differs from the pass before.
bool Layout::place()
{
    std::vector<std::int32_t> before;
    std::vector<std::int32_t> after;
    const auto addresses = [this](std::vector<std::int32_t>& list) {
        for (TOBFSection* section : m_image.module()->sections())
            for (TOBFFragment* fragment : section->fragments())
                list.push_back(fragment->insns().empty() ? 0 : fragment->insns().back()->pc());
    };
    addresses(before);
    m_pools.clear();
    std::set<TOBFSection*> placed;
    for (const Placement& placement : m_image.options().placements)
        m_pools.emplace_back(placement.ranges);
    for (const bool ram : {true, false}) {
        for (std::size_t i = 0; i < m_pools.size(); ++i)
            for (const std::string& name : m_image.options().placements[i].sections) {
                TOBFSection* section = m_image.module()->findSection(HString::intern(name));
                if (section == nullptr || isRam(section) != ram || !placed.insert(section).second)
                    continue;
                placeSection(section, m_pools[i]);
            }
        LinkerSymbols::update(m_image);
    }
    for (TOBFSection* section : m_image.module()->sections())
        if (!placed.contains(section))
            reportUnplaced(section);
    LinkerSymbols::update(m_image);
    addresses(after);
    return before != after;
}

void Layout::placeSection(TOBFSection* section, MemoryPool& pool)
{
    for (TOBFFragment* fragment : section->fragments())
        unplace(fragment);
    placeFixed(section, pool);
    if (isRam(section)) {
        placeWhole(section, pool);
    } else {
        for (TOBFFragment* fragment : section->fragments())
            if (originOf(fragment) == nullptr)
                placeFragment(fragment, pool);
    }
    section->invalidateMetrics();
}

void Layout::unplace(TOBFFragment* fragment) const
{
    for (TOBFInsn* insn : fragment->insns())
        insn->setPC(-1);
}

/// Fragments with an origin stand at that distance from the section's memory.
void Layout::placeFixed(TOBFSection* section, MemoryPool& pool)
{
    for (TOBFFragment* fragment : section->fragments()) {
        const TOBFOriginInsn* origin = originOf(fragment);
        if (origin == nullptr)
            continue;
        const std::uint32_t base = pool.ranges().empty() ? 0 : pool.ranges().front().start;
        const std::uint32_t start = base + static_cast<std::uint32_t>(origin->origin());
        const std::uint32_t size = assign(fragment, start);
        if (pool.reserve(start, size))
            continue;
        m_failed = true;
        m_image.diagnostics().error(m_image.nameOf(fragment) + " doesn't fit in section "
                                    + section->name()->str() + " at " + hex(start)
                                    + ", which is outside its memory or taken");
    }
}

/// Data is copied or cleared in one piece, so it stays together.
void Layout::placeWhole(TOBFSection* section, MemoryPool& pool)
{
    std::uint32_t alignment = 2;
    for (TOBFFragment* fragment : section->fragments())
        alignment = std::max(alignment, alignmentOf(fragment));
    std::uint32_t size = 0;
    const auto assignAll = [&](std::uint32_t start) {
        size = 0;
        for (TOBFFragment* fragment : section->fragments())
            if (originOf(fragment) == nullptr)
                size += assign(fragment, start + size);
    };
    assignAll(Nowhere);
    MemoryPool before = pool;
    if (const auto start = pool.allocate(size, alignment)) {
        assignAll(*start);
        return;
    }
    // Say what it is that doesn't fit, item by item.
    for (TOBFFragment* fragment : section->fragments())
        if (originOf(fragment) == nullptr)
            placeFragment(fragment, before);
    if (!m_failed)
        m_image.diagnostics().error("section " + section->name()->str() + " of "
                                    + std::to_string(size)
                                    + " bytes doesn't fit in one piece of its memory");
    m_failed = true;
}

void Layout::placeFragment(TOBFFragment* fragment, MemoryPool& pool)
{
    const std::uint32_t alignment = alignmentOf(fragment);
    const std::uint32_t size = assign(fragment, Nowhere);
    if (const auto start = pool.allocate(size, alignment)) {
        assign(fragment, *start);
        return;
    }
    m_failed = true;
    reportNoRoom(fragment, size, pool);
}

void Layout::reportNoRoom(TOBFFragment* fragment, std::uint32_t size, const MemoryPool& pool)
{
    const std::string section = fragment->section()->name()->str();
    const std::string why = pool.ranges().empty()
        ? "its placement has no memory"
        : std::to_string(pool.free()) + " of " + std::to_string(pool.total()) + " bytes are left";
    m_image.diagnostics().error(m_image.nameOf(fragment) + ", " + std::to_string(size)
                                + " bytes, doesn't fit in section " + section + ", " + why);
}

void Layout::reportUnplaced(TOBFSection* section)
{
    for (TOBFFragment* fragment : section->fragments()) {
        if (assign(fragment, Nowhere) == 0)
            continue;
        m_failed = true;
        m_image.diagnostics().error(m_image.nameOf(fragment) + " is in section "
                                    + section->name()->str() + ", which has no memory, see -T");
    }
}

bool Layout::relax()
{
    bool changed = false;
    for (TOBFSection* section : m_image.module()->sections()) {
        for (TOBFFragment* fragment : section->fragments()) {
            std::list<TOBFInsn*>& insns = fragment->insns();
            for (auto it = insns.begin(); it != insns.end(); ++it)
                if ((*it)->kind() == TOBFKind::ProcessorInsn && (*it)->recode(insns, it) != 0)
                    changed = true;
        }
    }
    return changed;
}
