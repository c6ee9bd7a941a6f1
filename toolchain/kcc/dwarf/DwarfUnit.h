#pragma once

#include "toolchain/kcc/ElfObject.h"
#include "toolchain/kcc/dwarf/DwarfConstants.h"

#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// The value of an attribute. Which field holds it follows from the form: a number, a place
/// (addresses), a block (expressions) or a text.
struct DwarfValue {
    unsigned attribute = 0;
    unsigned form = 0;
    std::uint64_t number = 0;
    ElfPlace place;
    std::span<const std::uint8_t> block;
    std::string_view text;
};

/// A debugging information entry. Relations to others are indexes into the unit's list; 0, the unit
/// itself, stands for none.
struct DwarfEntry {
    unsigned tag = 0;
    unsigned parent = 0;
    std::vector<unsigned> children;
    std::vector<DwarfValue> values;

    const DwarfValue* find(unsigned attribute) const;
    bool has(unsigned attribute) const { return find(attribute) != nullptr; }
    std::uint64_t number(unsigned attribute, std::uint64_t otherwise = 0) const;
    std::string_view text(unsigned attribute) const;
};

/// Code from `start` up to `end`, which are in one section.
struct DwarfRange {
    ElfPlace start;
    ElfPlace end;
};

/// An expression that tells where a variable is, while the code is within the range.
struct DwarfLocation {
    std::optional<DwarfRange> range; ///< empty: everywhere in the variable's scope
    std::span<const std::uint8_t> expression;
};

/// The compile unit of an object file: one, as the compiler writes it. Throws HException for
/// debugging information that is malformed.
class DwarfUnit {
public:
    /// False if the file has no debugging information.
    static bool exists(const ElfObject& elf) { return elf.find(".debug_info") != nullptr; }

    explicit DwarfUnit(const ElfObject& elf);

    const DwarfEntry& root() const { return m_entries.front(); }
    const DwarfEntry& entry(unsigned index) const { return m_entries[index]; }
    unsigned count() const { return static_cast<unsigned>(m_entries.size()); }

    /// The entry that an attribute refers to; 0 if it has none.
    unsigned reference(const DwarfEntry& entry, unsigned attribute) const;
    std::vector<DwarfRange> ranges(const DwarfEntry& entry) const;
    std::vector<DwarfLocation> locations(const DwarfEntry& entry) const;
    /// The place of an entry of the address table.
    ElfPlace address(std::uint64_t index) const;
    const ElfObject& elf() const { return m_elf; }
    /// Where a field of .debug_info that holds an address points to.
    ElfPlace addressField(const std::uint8_t* field) const;

private:
    struct Abbreviation {
        unsigned tag = 0;
        bool hasChildren = false;
        struct Field {
            unsigned attribute;
            unsigned form;
            std::int64_t implicit;
        };
        std::vector<Field> fields;
    };

    void readAbbreviations(std::size_t offset);
    void readEntries(std::size_t begin, std::size_t end);
    void readBases();
    void resolve(DwarfValue& value);
    std::string_view stringAt(const char* section, std::uint64_t offset) const;
    std::uint64_t listOffset(const char* section, std::uint64_t base, const DwarfValue& value,
                             unsigned indexForm) const;
    std::span<const std::uint8_t> data(const char* section) const;

    const ElfObject& m_elf;
    std::map<std::uint64_t, Abbreviation> m_abbreviations;
    std::vector<DwarfEntry> m_entries;
    std::map<std::uint64_t, unsigned> m_byOffset;
    std::uint64_t m_stringOffsetsBase = 8;
    std::uint64_t m_addressBase = 8;
    std::uint64_t m_rangeListsBase = 12;
    std::uint64_t m_locationListsBase = 12;
};
