#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

/// The last entries of a run, oldest first. At least one is kept, whatever the size.
class InstructionTrace {
public:
    struct Entry {
        std::uint32_t address;
        std::uint32_t data;
        std::uint32_t cycles;
    };

    /// In entries; the newest stay.
    void setSize(std::size_t entries)
    {
        entries = std::max<std::size_t>(entries, 1);
        if (entries == m_size)
            return;
        std::vector<Entry> kept;
        for (std::size_t i = count() - std::min(count(), entries); i < count(); ++i)
            kept.push_back((*this)[i]);
        m_entries = std::move(kept);
        m_size = entries;
        m_oldest = 0;
    }
    void add(const Entry& entry)
    {
        if (m_entries.size() < m_size) {
            m_entries.push_back(entry);
            return;
        }
        m_entries[m_oldest] = entry;
        if (++m_oldest == m_size)
            m_oldest = 0;
    }
    void clear()
    {
        m_entries.clear();
        m_oldest = 0;
    }
    std::size_t count() const { return m_entries.size(); }
    /// 0 is the oldest.
    const Entry& operator[](std::size_t index) const
    {
        const std::size_t at = m_oldest + index;
        return m_entries[at < m_entries.size() ? at : at - m_entries.size()];
    }

private:
    std::size_t m_size = 1;
    std::size_t m_oldest = 0;
    std::vector<Entry> m_entries;
};
