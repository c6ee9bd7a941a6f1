#pragma once

#include "toolchain/kld/LinkImage.h"

#include <map>
#include <vector>

/// Gives every item of the executable its address, and lets jumps that don't reach become branches,
/// until nothing changes.
class Layout {
public:
    explicit Layout(LinkImage& image) : m_image(image) { }

    /// Reports an error for each fragment that doesn't fit. False if there was one.
    bool run();

    /// The memory of each placement in the order of the options, as it is left.
    const std::vector<MemoryPool>& pools() const { return m_pools; }
    int passes() const { return m_passes; }

private:
    static constexpr int MostPasses = 200;

    bool checkAlignments();
    bool place();
    void placeSection(TOBFSection* section, MemoryPool& pool);
    void placeWhole(TOBFSection* section, MemoryPool& pool);
    void placeFixed(TOBFSection* section, MemoryPool& pool);
    void placeFragment(TOBFFragment* fragment, MemoryPool& pool);
    void unplace(TOBFFragment* fragment) const;
    void reportUnplaced(TOBFSection* section);
    void reportNoRoom(TOBFFragment* fragment, std::uint32_t size, const MemoryPool& pool);
    bool relax();

    LinkImage& m_image;
    std::vector<MemoryPool> m_pools;
    bool m_failed = false;
    int m_passes = 0;
};
