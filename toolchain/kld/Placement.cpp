#include "toolchain/kld/Placement.h"

#include "base/HException.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr std::uint32_t AddressSpace = 0x100000;

[[noreturn]] void fail(std::string_view text)
{
    throw HException("bad placement " + std::string(text));
}

std::vector<std::string_view> split(std::string_view text)
{
    std::vector<std::string_view> result;
    while (true) {
        const std::size_t comma = text.find(',');
        result.push_back(text.substr(0, comma));
        if (comma == std::string_view::npos)
            return result;
        text.remove_prefix(comma + 1);
    }
}

std::uint32_t parseHex(std::string_view digits, std::string_view whole)
{
    std::uint32_t value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    if (error != std::errc() || end != digits.data() + digits.size() || value > AddressSpace)
        fail(whole);
    return value;
}

MemoryRange parseRange(std::string_view text, std::string_view whole)
{
    const std::size_t dash = text.find('-');
    if (dash == std::string_view::npos)
        fail(whole);
    MemoryRange range{parseHex(text.substr(0, dash), whole),
                      parseHex(text.substr(dash + 1), whole)};
    if (range.end < range.start)
        fail(whole);
    if (range.end % 2 != 0 || range.end == range.start)
        ++range.end;
    return range;
}

std::uint32_t alignUp(std::uint32_t address, std::uint32_t alignment)
{
    return (address + alignment - 1) & ~(alignment - 1);
}

} // namespace

Placement parsePlacement(std::string_view text)
{
    Placement placement;
    const std::size_t equals = text.find('=');
    for (const std::string_view name : split(text.substr(0, equals))) {
        if (name.empty())
            fail(text);
        placement.sections.emplace_back(name);
    }
    if (equals != std::string_view::npos)
        for (const std::string_view range : split(text.substr(equals + 1)))
            placement.ranges.push_back(parseRange(range, text));
    return placement;
}

MemoryPool::MemoryPool(std::vector<MemoryRange> ranges) : m_ranges(std::move(ranges))
{
    m_free = m_ranges;
    std::sort(m_free.begin(), m_free.end(),
              [](const MemoryRange& a, const MemoryRange& b) { return a.start < b.start; });
}

std::optional<std::uint32_t> MemoryPool::allocate(std::uint32_t size, std::uint32_t alignment)
{
    for (MemoryRange& range : m_free) {
        const std::uint32_t start = alignUp(range.start, alignment);
        if (start <= range.end && range.end - start >= size) {
            reserve(start, size);
            return start;
        }
    }
    return std::nullopt;
}

bool MemoryPool::reserve(std::uint32_t start, std::uint32_t size)
{
    for (auto it = m_free.begin(); it != m_free.end(); ++it) {
        if (start < it->start || start > it->end || it->end - start < size)
            continue;
        const MemoryRange behind{start + size, it->end};
        it->end = start;
        // Alignment gaps are given up, so that the front stays short and what follows stays dense.
        if (it->size() <= 1)
            it = m_free.erase(it);
        else
            ++it;
        if (behind.size() > 0)
            m_free.insert(it, behind);
        return true;
    }
    return false;
}

std::uint32_t MemoryPool::total() const
{
    std::uint32_t sum = 0;
    for (const MemoryRange& range : m_ranges)
        sum += range.size();
    return sum;
}

std::uint32_t MemoryPool::free() const
{
    std::uint32_t sum = 0;
    for (const MemoryRange& range : m_free)
        sum += range.size();
    return sum;
}
