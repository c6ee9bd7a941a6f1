#include "toolchain/kcc/ElfObject.h"

#include "base/Endian.h"
#include "base/HException.h"

#include <elf.h>

#include <cstring>

namespace {

constexpr unsigned R_MSP430_32 = 1;
constexpr unsigned R_MSP430_16_BYTE = 5;

[[noreturn]] void fail(const char* what)
{
    throw HException(std::string("the compiler's output cannot be read (") + what + ")");
}

template <typename T> T recordAt(std::span<const std::uint8_t> bytes, std::size_t offset)
{
    if (offset > bytes.size() || bytes.size() - offset < sizeof(T))
        fail("it is cut off");
    T record;
    std::memcpy(&record, bytes.data() + offset, sizeof(T));
    return record;
}

std::string textAt(std::span<const std::uint8_t> table, std::size_t offset)
{
    if (offset >= table.size())
        fail("a name lies outside its table");
    const auto* begin = reinterpret_cast<const char*>(table.data() + offset);
    return {begin, strnlen(begin, table.size() - offset)};
}

} // namespace

bool ElfSection::isAllocated() const { return (flags & SHF_ALLOC) != 0; }
bool ElfSection::isCode() const { return (flags & SHF_EXECINSTR) != 0; }
bool ElfSection::isWritable() const { return (flags & SHF_WRITE) != 0; }

bool ElfSymbol::isSection() const { return type == STT_SECTION; }
bool ElfSymbol::isFile() const { return type == STT_FILE; }
bool ElfSymbol::isFunction() const { return type == STT_FUNC; }
bool ElfSymbol::isGlobal() const { return binding != STB_LOCAL; }
bool ElfSymbol::isWeak() const { return binding == STB_WEAK; }

ElfObject::ElfObject(std::span<const std::uint8_t> file)
{
    const auto header = recordAt<Elf32_Ehdr>(file, 0);
    if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_CLASS] != ELFCLASS32
        || header.e_ident[EI_DATA] != ELFDATA2LSB || header.e_machine != EM_MSP430
        || header.e_type != ET_REL)
        fail("it isn't a relocatable MSP430 file");
    readSections(file);
}

void ElfObject::readSections(std::span<const std::uint8_t> file)
{
    const auto header = recordAt<Elf32_Ehdr>(file, 0);
    std::vector<Elf32_Shdr> headers;
    for (unsigned i = 0; i < header.e_shnum; ++i)
        headers.push_back(
            recordAt<Elf32_Shdr>(file, header.e_shoff + std::size_t{i} * sizeof(Elf32_Shdr)));
    if (header.e_shstrndx >= headers.size())
        fail("it has no section names");
    for (const Elf32_Shdr& it : headers) {
        ElfSection section;
        section.type = it.sh_type;
        section.flags = it.sh_flags;
        section.alignment = it.sh_addralign;
        section.size = it.sh_size;
        if (it.sh_type != SHT_NOBITS && it.sh_type != SHT_NULL) {
            if (it.sh_offset > file.size() || file.size() - it.sh_offset < it.sh_size)
                fail("it is cut off");
            const auto bytes = file.subspan(it.sh_offset, it.sh_size);
            section.data.assign(bytes.begin(), bytes.end());
        }
        m_sections.push_back(std::move(section));
    }
    for (std::size_t i = 0; i < headers.size(); ++i) {
        m_sections[i].name = textAt(m_sections[header.e_shstrndx].data, headers[i].sh_name);
        m_byName.emplace(m_sections[i].name, static_cast<unsigned>(i));
    }
    const auto sectionAt = [&](std::uint32_t index) -> ElfSection& {
        if (index >= m_sections.size())
            fail("a section number is out of range");
        return m_sections[index];
    };
    for (std::size_t i = 0; i < headers.size(); ++i)
        if (headers[i].sh_type == SHT_SYMTAB)
            readSymbols(m_sections[i], sectionAt(headers[i].sh_link));
    for (std::size_t i = 0; i < headers.size(); ++i)
        if (headers[i].sh_type == SHT_RELA)
            readRelocations(m_sections[i], sectionAt(headers[i].sh_info));
}

void ElfObject::readSymbols(const ElfSection& table, const ElfSection& names)
{
    for (std::size_t at = 0; at + sizeof(Elf32_Sym) <= table.data.size(); at += sizeof(Elf32_Sym)) {
        const auto it = recordAt<Elf32_Sym>(table.data, at);
        ElfSymbol symbol;
        symbol.type = ELF32_ST_TYPE(it.st_info);
        symbol.binding = ELF32_ST_BIND(it.st_info);
        symbol.size = it.st_size;
        symbol.defined = it.st_shndx != SHN_UNDEF;
        symbol.place.offset = it.st_value;
        if (it.st_shndx < m_sections.size())
            symbol.place.section = it.st_shndx;
        symbol.name = symbol.isSection() ? m_sections[symbol.place.section].name
                                         : textAt(names.data, it.st_name);
        m_symbols.push_back(std::move(symbol));
    }
}

void ElfObject::readRelocations(const ElfSection& table, ElfSection& target)
{
    for (std::size_t at = 0; at + sizeof(Elf32_Rela) <= table.data.size();
         at += sizeof(Elf32_Rela)) {
        const auto it = recordAt<Elf32_Rela>(table.data, at);
        const ElfRelocation relocation{ELF32_R_SYM(it.r_info), it.r_addend};
        if (relocation.symbol >= m_symbols.size())
            fail("a symbol number is out of range");
        if (ELF32_R_TYPE(it.r_info) == R_MSP430_32) {
            if (target.data.size() < 4 || it.r_offset > target.data.size() - 4)
                fail("a relocation lies outside its section");
            const std::int64_t value =
                m_symbols[relocation.symbol].place.offset + relocation.addend;
            Endian::packUINT32(target.data.data(), it.r_offset, static_cast<std::uint32_t>(value),
                               Endian::Little);
        } else if (ELF32_R_TYPE(it.r_info) == R_MSP430_16_BYTE) {
            target.relocations[it.r_offset] = relocation;
        } else {
            fail("it has a relocation of an unknown type");
        }
    }
}

const ElfSection* ElfObject::find(std::string_view name) const
{
    const auto it = m_byName.find(name);
    return it != m_byName.end() ? &m_sections[it->second] : nullptr;
}

ElfPlace ElfObject::target(const ElfRelocation& relocation) const
{
    const ElfSymbol& symbol = m_symbols[relocation.symbol];
    return {symbol.place.section, symbol.place.offset + relocation.addend};
}
