#include "objfile/model/TOBFSection.h"

#include "objfile/model/TOBFInsn.h"

#include <algorithm>

namespace {

template <typename Function>
void forEachInsn(std::list<TOBFFragment*>& fragments, Function function)
{
    for (TOBFFragment* fragment : fragments)
        for (TOBFInsn* insn : fragment->insns())
            function(insn);
}

template <typename Predicate>
TOBFInsn* findInsn(std::list<TOBFFragment*>& fragments, Predicate matches)
{
    for (TOBFFragment* fragment : fragments)
        for (TOBFInsn* insn : fragment->insns())
            if (insn->pc() >= 0 && matches(insn))
                return insn;
    return nullptr;
}

unsigned start(const TOBFInsn* insn) { return static_cast<unsigned>(insn->pc()); }

} // namespace

const char* sectionKindName(SectionKind kind)
{
    switch (kind) {
    case SectionKind::Code: return "code";
    case SectionKind::Data: return "data";
    case SectionKind::Zeroed: return "zeroed";
    case SectionKind::Const: return "const";
    case SectionKind::Eeprom: return "eeprom";
    default: return "";
    }
}

TOBFFragment* TOBFSection::newFragment()
{
    addFragment(new TOBFFragment(this));
    return m_currentFragment;
}

void TOBFSection::addFragment(TOBFFragment* fragment)
{
    fragment->setSection(this);
    m_fragments.push_back(fragment);
    m_currentFragment = fragment;
}

void TOBFSection::addInsn(TOBFInsn* insn)
{
    if (m_currentFragment == nullptr)
        newFragment();
    m_currentFragment->addInsn(insn);
}

unsigned TOBFSection::lowestAddress()
{
    if (!m_metricsValid)
        computeSectionMetrics();
    return m_lowest;
}

int TOBFSection::highestAddress()
{
    if (!m_metricsValid)
        computeSectionMetrics();
    return m_highest;
}

unsigned TOBFSection::getSize()
{
    if (!m_metricsValid)
        computeSectionMetrics();
    if (m_lowest != NoAddress)
        return static_cast<unsigned>(m_highest) - m_lowest + 1;
    std::int64_t sum = 0;
    forEachInsn(m_fragments, [&](TOBFInsn* insn) { sum += insn->length(); });
    return static_cast<unsigned>(std::clamp<std::int64_t>(sum, 0, INT32_MAX));
}

unsigned TOBFSection::accumulatedSize()
{
    if (!m_accumulatedSizeValid) {
        std::int64_t sum = 0;
        forEachInsn(m_fragments, [&](TOBFInsn* insn) { sum += insn->length(); });
        m_accumulatedSize = static_cast<std::int32_t>(std::clamp<std::int64_t>(sum, 0, INT32_MAX));
        m_accumulatedSizeValid = true;
    }
    return static_cast<unsigned>(m_accumulatedSize);
}

void TOBFSection::computeSectionMetrics()
{
    std::int64_t lowest = INT64_MAX;
    std::int64_t highest = -1;
    // An image of this very section asks for its size while it is being computed.
    m_metricsValid = true;
    m_lowest = NoAddress;
    m_highest = -1;
    forEachInsn(m_fragments, [&](TOBFInsn* insn) {
        if (insn->pc() < 0)
            return;
        const int length = insn->length();
        if (length < 1)
            return;
        lowest = std::min<std::int64_t>(lowest, insn->pc());
        highest = std::max<std::int64_t>(highest, std::int64_t{insn->pc()} + length - 1);
    });
    if (highest >= 0) {
        m_lowest = static_cast<std::uint32_t>(lowest);
        m_highest = static_cast<std::int32_t>(std::min<std::int64_t>(highest, INT32_MAX));
    }
}

void TOBFSection::dump(unsigned size, unsigned char* buffer)
{
    const unsigned lowest = lowestAddress();
    forEachInsn(m_fragments, [&](TOBFInsn* insn) {
        if (insn->pc() < 0 || start(insn) < lowest)
            return;
        const unsigned offset = start(insn) - lowest;
        const auto length = static_cast<unsigned>(std::max(insn->length(), 0));
        for (unsigned i = 0; i < length && offset + i < size; ++i)
            buffer[offset + i] = static_cast<unsigned char>(insn->getByte(static_cast<int>(i)));
    });
}

TOBFInsn* TOBFSection::findInsnAt(unsigned address)
{
    return findInsn(m_fragments,
                    [=](TOBFInsn* insn) { return start(insn) == address && insn->length() > 0; });
}

TOBFInsn* TOBFSection::findInsnInRange(unsigned address)
{
    return findInsn(m_fragments, [=](TOBFInsn* insn) {
        return start(insn) <= address
            && address < start(insn) + static_cast<unsigned>(std::max(insn->length(), 0));
    });
}

void TOBFSection::markReachable(bool reachable)
{
    if (!mark(reachable))
        return;
    for (TOBFFragment* fragment : m_fragments)
        fragment->markReachable(reachable);
}
