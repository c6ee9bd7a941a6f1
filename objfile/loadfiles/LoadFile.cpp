#include "objfile/loadfiles/LoadFile.h"

#include "base/HException.h"

#include <algorithm>
#include <cstring>
#include <limits>

void LoadFileInterface::makeContiguous(unsigned char fill)
{
    const LoadFileSections& all = loadFileSections();
    unsigned int lowest = std::numeric_limits<unsigned int>::max();
    std::uint64_t highest = 0;
    for (const auto& section : all.sections()) {
        lowest = std::min(lowest, section->address());
        highest = std::max(highest, std::uint64_t{section->address()} + section->length());
    }
    if (highest <= lowest)
        return;
    const std::uint64_t span = highest - lowest;
    if (span > std::max<std::uint64_t>(MaximumContiguousSpan, all.length()))
        throw HException("addresses are too far apart for one contiguous section");
    auto whole = std::make_unique<ExpandingLoadFileSection>("Contiguous section", lowest);
    unsigned char* image = whole->expand(static_cast<unsigned int>(span));
    std::memset(image, fill, span);
    for (const auto& section : all.sections())
        if (section->length() > 0)
            std::memcpy(image + (section->address() - lowest), section->data(false),
                        section->length());
    m_sections.clear();
    m_sections.add(std::move(whole));
}

void LoadFileInterface::sortLoadFileSections() { loadFileSections().sort(); }

LoadFileSections& LoadFileInterface::loadFileSections()
{
    if (!m_sectionsValid) {
        if (!createLoadFileSections())
            throw HException("cannot read sections from load file");
        m_sectionsValid = true;
    }
    return m_sections;
}

void LoadFileInterface::invalidateLoadFileSections()
{
    m_sections.clear();
    m_sectionsValid = false;
}

void LoadFileInterface::clearPatches()
{
    for (const auto* list : {&m_sections.sections(), &m_sections.eeSections()})
        for (const auto& section : *list)
            section->clearPatch();
}

void StandardLoadFile::setEntryPoint(unsigned long address)
{
    m_entryPoint = static_cast<unsigned int>(address);
    m_hasEntryPoint = true;
}
