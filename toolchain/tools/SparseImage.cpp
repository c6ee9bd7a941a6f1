#include "toolchain/tools/SparseImage.h"

bool SparseImage::put(std::uint32_t address, unsigned char byte)
{
    Page& page = m_pages[address / PageSize];
    const std::uint32_t index = address % PageSize;
    if (page.present[index])
        return page.bytes[index] == byte;
    page.bytes[index] = byte;
    page.present[index] = true;
    return true;
}

int SparseImage::at(std::uint32_t address) const
{
    const auto page = m_pages.find(address / PageSize);
    const std::uint32_t index = address % PageSize;
    return page != m_pages.end() && page->second.present[index] ? page->second.bytes[index] : -1;
}

std::vector<SparseImage::Run> SparseImage::runs() const
{
    std::vector<Run> runs;
    for (const auto& [number, page] : m_pages)
        for (std::uint32_t index = 0; index < PageSize; ++index) {
            if (!page.present[index])
                continue;
            const std::uint32_t address = number * PageSize + index;
            if (runs.empty() || runs.back().address + runs.back().bytes.size() != address)
                runs.push_back({address, {}});
            runs.back().bytes.push_back(page.bytes[index]);
        }
    return runs;
}
