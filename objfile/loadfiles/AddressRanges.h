#pragma once

#include "objfile/loadfiles/AddressRange.h"

#include <cstddef>
#include <vector>

/// Address ranges sorted by their start. Queries cost a binary search, whatever overlaps what.
/// Pointers and iterators hold until the set changes.
class AddressRanges {
public:
    using iterator = std::vector<AddressRange>::const_iterator;

    iterator begin() const { return m_ranges.begin(); }
    iterator end() const { return m_ranges.end(); }
    std::size_t count() const { return m_ranges.size(); }
    bool empty() const { return m_ranges.empty(); }
    const AddressRange& operator[](std::size_t index) const { return m_ranges[index]; }

    /// Adds a range; the bounds may come in either order. With `merge`, ranges of the same type
    /// that overlap it and then those that touch it become part of it, so that a set built with
    /// `merge` throughout holds no two ranges of one type that overlap or touch.
    void add(std::uint32_t low, std::uint32_t high, AddressRange::Type type, bool merge);
    void add(std::uint32_t low, std::uint32_t high, bool merge) { add(low, high, 0, merge); }

    /// The range that holds the address or both bounds; null if there is none.
    const AddressRange* find(std::uint32_t address) const { return find(address, address); }
    const AddressRange* find(std::uint32_t low, std::uint32_t high) const;

    /// True if any range overlaps the span; the bounds may come in either order.
    bool isOccludedBy(std::uint32_t low, std::uint32_t high) const;
    /// True if any range of the other set overlaps any range of this one.
    bool isOccludedBy(const AddressRanges& other) const;
    /// True if every range lies inside one range of the other set.
    bool isSubsetOf(const AddressRanges& other) const;

    void remove(iterator range);
    void clear();

    friend bool operator==(const AddressRanges& a, const AddressRanges& b)
    {
        return a.m_ranges == b.m_ranges;
    }

private:
    std::size_t countStartingUpTo(std::uint64_t address) const;
    std::size_t firstReaching(std::uint32_t address) const;
    void updateReach(std::size_t from);
    template <typename Joins> bool absorbOnce(AddressRange& range, Joins joins);

    std::vector<AddressRange> m_ranges;
    /// For each index the highest end of all ranges up to and including it; never falls.
    std::vector<std::uint32_t> m_reach;
};
