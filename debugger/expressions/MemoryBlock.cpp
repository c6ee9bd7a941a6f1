#include "debugger/expressions/MemoryBlock.h"

#include <algorithm>

namespace {

/// How many of `size` bytes from `offset` on lie in a block.
unsigned inside(unsigned offset, unsigned size, std::size_t block)
{
    if (offset >= block)
        return 0;
    return static_cast<unsigned>(std::min<std::size_t>(size, block - offset));
}

} // namespace

WholeMemoryBlock::WholeMemoryBlock(unsigned size, const Read& read) : m_bytes(size)
{
    if (size > 0)
        read(0, size, m_bytes.data());
}

void WholeMemoryBlock::get(unsigned offset, unsigned size, unsigned char* buffer)
{
    std::fill_n(buffer, size, static_cast<unsigned char>(0));
    const unsigned count = inside(offset, size, m_bytes.size());
    if (count > 0)
        std::copy_n(m_bytes.data() + offset, count, buffer);
}

void WholeMemoryBlock::put(unsigned offset, unsigned size, const unsigned char* buffer)
{
    const unsigned count = inside(offset, size, m_bytes.size());
    if (count > 0)
        std::copy_n(buffer, count, m_bytes.data() + offset);
}

void WholeMemoryBlock::store(const Write& write)
{
    if (!m_bytes.empty())
        write(0, static_cast<unsigned>(m_bytes.size()), m_bytes.data());
}

void LazyMemoryBlock::get(unsigned offset, unsigned size, unsigned char* buffer)
{
    std::fill_n(buffer, size, static_cast<unsigned char>(0));
    const unsigned count = inside(offset, size, m_size);
    if (count > 0)
        m_read(offset, count, buffer);
    for (auto it = m_changed.lower_bound(offset);
         it != m_changed.end() && it->first - offset < count; ++it)
        buffer[it->first - offset] = it->second;
}

void LazyMemoryBlock::put(unsigned offset, unsigned size, const unsigned char* buffer)
{
    const unsigned count = inside(offset, size, m_size);
    for (unsigned i = 0; i < count; ++i)
        m_changed[offset + i] = buffer[i];
}

void LazyMemoryBlock::store(const Write& write)
{
    std::vector<unsigned char> run;
    for (auto it = m_changed.begin(); it != m_changed.end(); ++it) {
        run.push_back(it->second);
        const auto next = std::next(it);
        if (next != m_changed.end() && next->first == it->first + 1)
            continue;
        const auto size = static_cast<unsigned>(run.size());
        write(it->first + 1 - size, size, run.data());
        run.clear();
    }
}
