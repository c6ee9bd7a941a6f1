#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Memory from `start` up to, not including, `end`.
struct MemoryRange {
    std::uint32_t start = 0;
    std::uint32_t end = 0;

    std::uint32_t size() const { return end - start; }
    friend bool operator==(const MemoryRange&, const MemoryRange&) = default;
};

/// Sections and the memory that they share, from one -T option.
struct Placement {
    std::vector<std::string> sections;
    std::vector<MemoryRange> ranges;
};

/// Reads `NAME,NAME...` or `NAME,NAME...=START-END,START-END...`, the numbers in hexadecimal.
///
/// Some ends name the last address and some the one behind it, depending on who wrote the option.
/// As memory is given in whole words, an odd end is the last address and an even one is behind it;
/// a start that is its own end is one byte. Throws HException for anything else.
Placement parsePlacement(std::string_view text);

/// Free memory, handed out from the front.
class MemoryPool {
public:
    explicit MemoryPool(std::vector<MemoryRange> ranges);

    /// The lowest address from which `size` bytes are free, and takes them. `alignment` is a power
    /// of two.
    std::optional<std::uint32_t> allocate(std::uint32_t size, std::uint32_t alignment);
    /// Takes these bytes; false if not all of them are free.
    bool reserve(std::uint32_t start, std::uint32_t size);

    const std::vector<MemoryRange>& ranges() const { return m_ranges; }
    std::uint32_t total() const;
    std::uint32_t free() const;

private:
    std::vector<MemoryRange> m_ranges;
    std::vector<MemoryRange> m_free; ///< sorted
};
