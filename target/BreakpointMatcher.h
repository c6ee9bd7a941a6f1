#pragma once

#include "target/HBreakpoint.h"

#include <vector>

/// Tests what the simulated target does against the breakpoints that are set. Triggers: 0 execute,
/// 1 read, 2 write, 3 either access.
class BreakpointMatcher {
public:
    static constexpr std::uint32_t Execute = 0, Read = 1, Write = 2, ReadWrite = 3;

    void add(HBreakpoint* breakpoint) { m_breakpoints.push_back(breakpoint); }
    bool remove(HBreakpoint* breakpoint);
    void clear();
    std::size_t count() const { return m_breakpoints.size(); }

    HBreakpoint* matched() const { return m_matched; }
    std::uint32_t matchedAddress() const { return m_matchedAddress; }
    std::uint32_t matchedData() const { return m_matchedData; }
    void resetMatched() { m_matched = nullptr; }

    /// True if accesses of registers have to be reported.
    bool watchesRegisters() const;
    /// Calls `visit(first, last)` for the spans of addresses, both bounds inclusive, whose accesses
    /// have to be reported or, with `code`, in which the PC has to be compared.
    template <class Visitor> void forEachSpan(bool code, Visitor visit) const
    {
        for (const HBreakpoint* breakpoint : m_breakpoints)
            if (breakpoint->isRegister || (breakpoint->trigger == Execute) != code)
                continue;
            else if (breakpoint->inverse)
                visit(0u, ~0u);
            else if (breakpoint->length != 0)
                visit(breakpoint->address, breakpoint->address + (breakpoint->length - 1));
    }

    /// True if an enabled breakpoint covers the PC; changes nothing.
    bool wouldMatchCode(std::uint32_t pc) const
    {
        for (const HBreakpoint* breakpoint : m_breakpoints)
            if (matchesCode(*breakpoint, pc))
                return true;
        return false;
    }
    void matchCode(std::uint32_t pc);
    /// `size` is 1 or 2 bytes.
    void matchRegister(std::uint32_t number, unsigned size, std::uint32_t value, bool read);
    void matchData(std::uint32_t address, unsigned size, std::uint32_t value, bool read);

private:
    static bool matchesCode(const HBreakpoint& breakpoint, std::uint32_t pc)
    {
        return breakpoint.enabled && breakpoint.trigger == Execute && !breakpoint.isRegister
            && (pc - breakpoint.address < breakpoint.length) != breakpoint.inverse;
    }
    void setMatched(HBreakpoint* breakpoint, std::uint32_t address, std::uint32_t data);

    std::vector<HBreakpoint*> m_breakpoints;
    HBreakpoint* m_matched = nullptr;
    std::uint32_t m_matchedAddress = 0;
    std::uint32_t m_matchedData = 0;
};
