#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// A place in an object file: a section by its index, and a distance from its start in bytes.
struct ElfPlace {
    unsigned section = 0; ///< 0 is no section: the offset is an absolute value
    std::int64_t offset = 0;
    friend auto operator<=>(const ElfPlace&, const ElfPlace&) = default;
};

/// What an address field is to hold: a symbol and an addend (MSP430 psABI, R_MSP430_16_BYTE).
struct ElfRelocation {
    unsigned symbol = 0;
    std::int64_t addend = 0;
};

struct ElfSection {
    std::string name;
    std::uint32_t type = 0;
    std::uint32_t flags = 0;
    std::uint32_t alignment = 1;
    std::uint32_t size = 0;
    std::vector<std::uint8_t> data; ///< empty for a section without contents in the file
    std::map<std::uint32_t, ElfRelocation> relocations; ///< address fields, by offset

    bool isAllocated() const;
    bool isCode() const;
    bool isWritable() const;
};

struct ElfSymbol {
    std::string name;
    ElfPlace place;
    std::uint32_t size = 0;
    std::uint8_t type = 0;
    std::uint8_t binding = 0;
    bool defined = false;

    bool isSection() const;
    bool isFile() const;
    bool isFunction() const;
    bool isGlobal() const;
    bool isWeak() const;
};

/// A relocatable ELF32 file for the MSP430, as the compiler writes it. The 32-bit relocations of
/// the debug sections are applied; the 16-bit ones are kept, since they say which section an
/// address is in. Throws HException for a file that isn't one.
class ElfObject {
public:
    explicit ElfObject(std::span<const std::uint8_t> file);

    const std::vector<ElfSection>& sections() const { return m_sections; }
    const std::vector<ElfSymbol>& symbols() const { return m_symbols; }
    /// The section of that name, or null.
    const ElfSection* find(std::string_view name) const;
    /// What an address field refers to: the symbol's place plus the addend. For a symbol that is
    /// not defined here the section is 0.
    ElfPlace target(const ElfRelocation& relocation) const;

private:
    void readSections(std::span<const std::uint8_t> file);
    void readSymbols(const ElfSection& table, const ElfSection& names);
    void readRelocations(const ElfSection& table, ElfSection& target);

    std::vector<ElfSection> m_sections;
    std::vector<ElfSymbol> m_symbols;
    std::map<std::string, unsigned, std::less<>> m_byName;
};
