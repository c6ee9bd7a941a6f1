#include "objfile/loadfiles/AddressRanges.h"

#include <algorithm>

void AddressRanges::add(std::uint32_t low, std::uint32_t high, AddressRange::Type type, bool merge)
{
    AddressRange range(low, high, type);
    if (merge) {
        const auto overlaps = [](const AddressRange& a, const AddressRange& b) {
            return a.occludedBy(&b);
        };
        const auto touches = [](const AddressRange& a, const AddressRange& b) {
            return a.touches(b);
        };
        while (absorbOnce(range, overlaps)) { }
        while (absorbOnce(range, touches)) { }
    }
    const auto place =
        std::upper_bound(m_ranges.begin(), m_ranges.end(), range, AddressRangeLess());
    const auto index = place - m_ranges.begin();
    m_ranges.insert(place, range);
    // The entry in front repeats, which keeps the vector in order until it is brought up to date.
    m_reach.insert(m_reach.begin() + index,
                   index > 0 ? m_reach[static_cast<std::size_t>(index) - 1] : 0);
    updateReach(static_cast<std::size_t>(index));
}

const AddressRange* AddressRanges::find(std::uint32_t low, std::uint32_t high) const
{
    if (low > high)
        std::swap(low, high);
    // Where the reach first gets to an address, it is that very range which reaches it.
    const std::size_t index = firstReaching(high);
    return index < countStartingUpTo(low) ? &m_ranges[index] : nullptr;
}

bool AddressRanges::isOccludedBy(std::uint32_t low, std::uint32_t high) const
{
    if (low > high)
        std::swap(low, high);
    const std::size_t candidates = countStartingUpTo(high);
    return candidates > 0 && m_reach[candidates - 1] >= low;
}

bool AddressRanges::isOccludedBy(const AddressRanges& other) const
{
    return std::any_of(other.begin(), other.end(), [this](const AddressRange& range) {
        return isOccludedBy(range.start, range.end);
    });
}

bool AddressRanges::isSubsetOf(const AddressRanges& other) const
{
    return std::all_of(begin(), end(), [&other](const AddressRange& range) {
        return other.find(range.start, range.end) != nullptr;
    });
}

void AddressRanges::remove(iterator range)
{
    const auto index = range - m_ranges.begin();
    m_ranges.erase(range);
    m_reach.erase(m_reach.begin() + index);
    updateReach(static_cast<std::size_t>(index));
}

void AddressRanges::clear()
{
    m_ranges.clear();
    m_reach.clear();
}

/// The number of ranges, from the front, that start at or below the address.
std::size_t AddressRanges::countStartingUpTo(std::uint64_t address) const
{
    const auto behind = std::upper_bound(
        m_ranges.begin(), m_ranges.end(), address,
        [](std::uint64_t value, const AddressRange& range) { return value < range.start; });
    return static_cast<std::size_t>(behind - m_ranges.begin());
}

/// The first index whose range, or one in front of it, goes up to the address or beyond.
std::size_t AddressRanges::firstReaching(std::uint32_t address) const
{
    const auto found = std::lower_bound(m_reach.begin(), m_reach.end(), address);
    return static_cast<std::size_t>(found - m_reach.begin());
}

/// Brings the reach up to date after a change at the index; stops where nothing differs any more.
void AddressRanges::updateReach(std::size_t from)
{
    for (std::size_t i = from; i < m_ranges.size(); ++i) {
        const std::uint32_t before = i > 0 ? m_reach[i - 1] : 0;
        const std::uint32_t reach = std::max(before, m_ranges[i].end);
        if (i > from && m_reach[i] == reach)
            return;
        m_reach[i] = reach;
    }
}

/// Takes out every range of the same type for which `joins(it, range)` holds and grows `range` to
/// cover it. Returns whether there was one.
template <typename Joins> bool AddressRanges::absorbOnce(AddressRange& range, Joins joins)
{
    const std::size_t first = firstReaching(range.start > 0 ? range.start - 1 : 0);
    const std::size_t last = countStartingUpTo(std::uint64_t{range.end} + 1);
    if (first >= last)
        return false;
    const auto from = m_ranges.begin() + static_cast<std::ptrdiff_t>(first);
    const auto to = m_ranges.begin() + static_cast<std::ptrdiff_t>(last);
    const AddressRange sought = range;
    const auto kept = std::remove_if(from, to, [&](const AddressRange& candidate) {
        if (candidate.type != sought.type || !joins(candidate, sought))
            return false;
        range.start = std::min(range.start, candidate.start);
        range.end = std::max(range.end, candidate.end);
        return true;
    });
    if (kept == to)
        return false;
    const auto removed = to - kept;
    m_ranges.erase(kept, to);
    const auto reach = m_reach.begin() + static_cast<std::ptrdiff_t>(first);
    m_reach.erase(reach, reach + removed);
    // Ranges inside the window have moved, so the early end of updateReach doesn't hold there.
    for (std::size_t i = first; i < last - static_cast<std::size_t>(removed); ++i)
        m_reach[i] = std::max(i > 0 ? m_reach[i - 1] : 0, m_ranges[i].end);
    updateReach(last - static_cast<std::size_t>(removed));
    return true;
}
