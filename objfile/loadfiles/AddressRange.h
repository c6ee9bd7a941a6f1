#pragma once

#include <cstdint>
#include <utility>

/// A range of byte addresses, both bounds inclusive.
struct AddressRange {
    /// A small number by which the owner of a set tells kinds of memory apart.
    using Type = int;

    /// The bounds may come in either order.
    AddressRange(std::uint32_t low, std::uint32_t high, Type kind = 0)
        : start(low),
          end(high),
          type(kind)
    {
        if (start > end)
            std::swap(start, end);
    }

    /// In bytes; 64 bits wide, since the whole address space is a range too.
    std::uint64_t length() const { return std::uint64_t{end} - start + 1; }
    bool contains(std::uint32_t low, std::uint32_t high) const
    {
        return start <= low && low <= end && start <= high && high <= end;
    }
    /// True when the other range overlaps this one in any way.
    bool occludedBy(const AddressRange* other) const
    {
        return start <= other->end && other->start <= end;
    }
    /// True when one range begins right behind the other.
    bool touches(const AddressRange& other) const
    {
        return std::uint64_t{end} + 1 == other.start || std::uint64_t{other.end} + 1 == start;
    }

    friend bool operator==(const AddressRange&, const AddressRange&) = default;

    std::uint32_t start;
    std::uint32_t end;
    Type type;
};

struct AddressRangeLess {
    bool operator()(const AddressRange& a, const AddressRange& b) const
    {
        return a.start < b.start;
    }
};
