#include "objfile/loadfiles/LoadFileSections.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace {

std::uint64_t endOf(const LoadFileSectionInterface& section)
{
    return std::uint64_t{section.address()} + section.length();
}

unsigned int totalLength(const LoadFileSections::List& list)
{
    return std::accumulate(list.begin(), list.end(), 0u,
                           [](unsigned int sum, const auto& s) { return sum + s->length(); });
}

void sortByAddress(LoadFileSections::List& list)
{
    std::stable_sort(list.begin(), list.end(),
                     [](const auto& a, const auto& b) { return a->address() < b->address(); });
}

} // namespace

void LoadFileSections::add(std::unique_ptr<LoadFileSectionInterface> section)
{
    m_sections.push_back(std::move(section));
}

void LoadFileSections::addee(std::unique_ptr<LoadFileSectionInterface> section)
{
    m_eeSections.push_back(std::move(section));
}

unsigned int LoadFileSections::length() const { return totalLength(m_sections); }

unsigned int LoadFileSections::eelength() const { return totalLength(m_eeSections); }

unsigned int LoadFileSections::firstSectionStartAddress() const
{
    return m_sections.empty() ? 0 : m_sections.front()->address();
}

LoadFileSectionInterface* LoadFileSections::find(unsigned int address, unsigned int length) const
{
    const std::uint64_t end = std::uint64_t{address} + length;
    const auto found = std::find_if(m_sections.begin(), m_sections.end(), [&](const auto& s) {
        return s->address() <= address && end <= endOf(*s);
    });
    return found == m_sections.end() ? nullptr : found->get();
}

void LoadFileSections::getSectionAddressRanges(AddressRanges& ranges) const
{
    for (const auto& section : m_sections) {
        if (section->length() == 0)
            continue;
        const std::uint64_t last =
            std::min<std::uint64_t>(endOf(*section) - 1, std::numeric_limits<std::uint32_t>::max());
        ranges.add(section->address(), static_cast<std::uint32_t>(last), false);
    }
}

void LoadFileSections::sort()
{
    sortByAddress(m_sections);
    sortByAddress(m_eeSections);
}
