#include "target/BreakpointMatcher.h"

#include <algorithm>

namespace {

bool covers(const HBreakpoint& breakpoint, std::uint32_t address)
{
    const bool inside = address - breakpoint.address < breakpoint.length;
    return inside != breakpoint.inverse;
}

bool fitsAccess(const HBreakpoint& breakpoint, bool read)
{
    using Matcher = BreakpointMatcher;
    return breakpoint.trigger == Matcher::ReadWrite
        || breakpoint.trigger == (read ? Matcher::Read : Matcher::Write);
}

bool valueMatches(const HBreakpoint& breakpoint, unsigned size, std::uint32_t value)
{
    const std::uint32_t mask = breakpoint.mask & ((1u << size * 8) - 1);
    const std::uint32_t seen = value & mask;
    const std::uint32_t wanted = breakpoint.value & mask;
    switch (breakpoint.comparison) {
    case HBreakpoint::Equal: return seen == wanted;
    case HBreakpoint::GreaterOrEqual: return seen >= wanted;
    case HBreakpoint::LessOrEqual: return seen <= wanted;
    case HBreakpoint::NotEqual: return seen != wanted;
    default: return false;
    }
}

struct Access {
    std::uint32_t address;
    unsigned size;
    std::uint32_t value;
    bool read;
};

bool matches(const HBreakpoint& breakpoint, const Access& access)
{
    if (!breakpoint.enabled || breakpoint.isRegister
        || breakpoint.trigger == BreakpointMatcher::Execute || !fitsAccess(breakpoint, access.read))
        return false;
    if (!breakpoint.valued)
        return covers(breakpoint, access.address);
    return access.address == breakpoint.address && access.size == breakpoint.length
        && valueMatches(breakpoint, access.size, access.value);
}

} // namespace

bool BreakpointMatcher::remove(HBreakpoint* breakpoint)
{
    if (m_matched == breakpoint)
        m_matched = nullptr;
    return std::erase(m_breakpoints, breakpoint) != 0;
}

void BreakpointMatcher::clear()
{
    m_breakpoints.clear();
    m_matched = nullptr;
}

bool BreakpointMatcher::watchesRegisters() const
{
    return std::any_of(m_breakpoints.begin(), m_breakpoints.end(),
                       [](const HBreakpoint* breakpoint) { return breakpoint->isRegister; });
}

void BreakpointMatcher::setMatched(HBreakpoint* breakpoint, std::uint32_t address,
                                   std::uint32_t data)
{
    m_matched = breakpoint;
    m_matchedAddress = address;
    m_matchedData = data;
    for (HBreakpoint* other : m_breakpoints) {
        if (other->enabledBy != breakpoint)
            continue;
        other->enabled = true;
        m_matched = nullptr;
    }
}

void BreakpointMatcher::matchCode(std::uint32_t pc)
{
    m_matched = nullptr;
    for (HBreakpoint* breakpoint : m_breakpoints)
        if (matchesCode(*breakpoint, pc))
            setMatched(breakpoint, pc, 0);
}

void BreakpointMatcher::matchRegister(std::uint32_t number, unsigned size, std::uint32_t value,
                                      bool read)
{
    for (HBreakpoint* breakpoint : m_breakpoints)
        if (breakpoint->enabled && breakpoint->isRegister && breakpoint->address == number
            && fitsAccess(*breakpoint, read)
            && (!breakpoint->valued || valueMatches(*breakpoint, size, value)))
            setMatched(breakpoint, number, value);
}

void BreakpointMatcher::matchData(std::uint32_t address, unsigned size, std::uint32_t value,
                                  bool read)
{
    const Access access{address, size, value, read};
    bool matchedNow = false;
    for (HBreakpoint* breakpoint : m_breakpoints) {
        if (!matches(*breakpoint, access))
            continue;
        setMatched(breakpoint, address, value);
        matchedNow = m_matched != nullptr;
    }
    if (!matchedNow)
        return;
    for (const HBreakpoint* term = m_matched->next; term != nullptr; term = term->next)
        if (!matches(*term, access)) {
            m_matched = nullptr;
            return;
        }
}
