#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <map>
#include <vector>

/// Bytes at addresses, with gaps.
class SparseImage {
public:
    struct Run {
        std::uint32_t address;
        std::vector<unsigned char> bytes;
    };

    /// Puts a byte at an address. False, with nothing changed, if another one is there.
    bool put(std::uint32_t address, unsigned char byte);

    /// The byte at an address, -1 for a gap.
    int at(std::uint32_t address) const;

    /// The contiguous bytes, by rising address.
    std::vector<Run> runs() const;

    bool empty() const { return m_pages.empty(); }

private:
    static constexpr std::uint32_t PageSize = 256;
    struct Page {
        std::array<unsigned char, PageSize> bytes{};
        std::bitset<PageSize> present;
    };
    std::map<std::uint32_t, Page> m_pages;
};
