#include "objfile/query/FileMappings.h"

#include <algorithm>

void FileMappings::add(int line, unsigned address, unsigned length)
{
    m_entries.push_back({line, address, length});
}

void FileMappings::create()
{
    const auto byAddress = [](const Entry& a, const Entry& b) { return a.address < b.address; };
    const auto byLine = [](const Entry& a, const Entry& b) { return a.line < b.line; };
    m_lines = m_entries;
    std::stable_sort(m_entries.begin(), m_entries.end(), byAddress);
    std::stable_sort(m_lines.begin(), m_lines.end(), byLine);
}

int FileMappings::lineOf(unsigned address) const
{
    const auto it =
        std::upper_bound(m_entries.begin(), m_entries.end(), address,
                         [](unsigned value, const Entry& entry) { return value < entry.address; });
    if (it == m_entries.begin())
        return None;
    const Entry& entry = *std::prev(it);
    return address - entry.address < entry.length ? entry.line : None;
}

bool FileMappings::addressOf(int line, unsigned& address) const
{
    const auto it =
        std::lower_bound(m_lines.begin(), m_lines.end(), line,
                         [](const Entry& entry, int value) { return entry.line < value; });
    if (it == m_lines.end() || it->line != line)
        return false;
    address = it->address;
    return true;
}

void FileMappings::clear()
{
    m_entries.clear();
    m_lines.clear();
}
