#pragma once

#include "objfile/loadfiles/AddressRanges.h"
#include "objfile/loadfiles/LoadFileSection.h"

#include <memory>
#include <vector>

/// The sections of a load file: the ordinary ones, and those for EEPROM, which have addresses of
/// their own. Owns them.
class LoadFileSections {
public:
    using List = std::vector<std::unique_ptr<LoadFileSectionInterface>>;

    void add(std::unique_ptr<LoadFileSectionInterface> section);
    void addee(std::unique_ptr<LoadFileSectionInterface> section);

    const List& sections() const { return m_sections; }
    const List& eeSections() const { return m_eeSections; }

    /// Sums of the sections' lengths in bytes.
    unsigned int length() const;
    unsigned int eelength() const;

    /// Of the ordinary sections' first, 0 if there is none.
    unsigned int firstSectionStartAddress() const;

    /// The first ordinary section that holds the whole span, or null.
    LoadFileSectionInterface* find(unsigned int address, unsigned int length) const;

    /// Adds the range of each ordinary section that has bytes, unmerged.
    void getSectionAddressRanges(AddressRanges& ranges) const;

    /// Both lists by ascending address; sections of one address keep their order.
    void sort();

    /// Deletes the ordinary sections.
    void clear() { m_sections.clear(); }
    /// Deletes the EEPROM sections.
    void clearee() { m_eeSections.clear(); }

private:
    List m_sections;
    List m_eeSections;
};
