#include "toolchain/kcc/dwarf/DwarfLines.h"

#include "toolchain/kcc/dwarf/DwarfConstants.h"
#include "toolchain/kcc/dwarf/DwarfCursor.h"

#include <algorithm>
#include <filesystem>

namespace {

// Section 6.2 of the DWARF 5 standard.
enum StandardOpcode : unsigned {
    Copy = 1,
    AdvancePC,
    AdvanceLine,
    SetFile,
    SetColumn,
    NegateStatement,
    SetBasicBlock,
    ConstAddPC,
    FixedAdvancePC,
    SetPrologueEnd,
    SetEpilogueBegin,
    SetIsa,
};
enum ExtendedOpcode : unsigned { EndSequence = 1, SetAddress = 2 };
enum ContentType : unsigned { ContentPath = 1, ContentDirectoryIndex = 2 };

struct FileEntry {
    std::string path;
    std::uint64_t directory = 0;
};

class LineReader {
public:
    LineReader(const ElfObject& elf, const ElfSection& section, std::size_t offset)
        : m_elf(elf),
          m_section(section),
          m_cursor(section.data, offset)
    {
    }

    DwarfLines read(const std::string& directory)
    {
        const std::uint64_t length = m_cursor.u32();
        const std::size_t end = m_cursor.at() + static_cast<std::size_t>(length);
        if (m_cursor.u16() != 5)
            throw HException("the compiler's line table is of an unknown version");
        m_cursor.skip(2); // address and segment selector size
        const std::uint64_t headerLength = m_cursor.u32();
        const std::size_t program = m_cursor.at() + static_cast<std::size_t>(headerLength);
        m_minimumLength = m_cursor.u8();
        m_cursor.skip(1); // operations of an instruction
        m_defaultIsStatement = m_cursor.u8() != 0;
        m_lineBase = static_cast<std::int8_t>(m_cursor.u8());
        m_lineRange = std::max<unsigned>(m_cursor.u8(), 1);
        m_opcodeBase = std::max<unsigned>(m_cursor.u8(), 1);
        m_operandCounts.assign(m_opcodeBase, 0);
        for (unsigned i = 1; i < m_opcodeBase; ++i)
            m_operandCounts[i] = m_cursor.u8();
        readFileNames(directory);
        m_cursor = DwarfCursor(m_section.data, program);
        while (m_cursor.at() < end)
            step();
        std::stable_sort(m_result.lines.begin(), m_result.lines.end(),
                         [](const DwarfLine& a, const DwarfLine& b) { return a.place < b.place; });
        return std::move(m_result);
    }

private:
    std::vector<FileEntry> readEntries()
    {
        std::vector<std::pair<std::uint64_t, std::uint64_t>> formats(m_cursor.u8());
        for (auto& [content, form] : formats) {
            content = m_cursor.uleb();
            form = m_cursor.uleb();
        }
        std::vector<FileEntry> entries;
        for (std::uint64_t count = m_cursor.uleb(); count > 0; --count) {
            FileEntry entry;
            for (const auto& [content, form] : formats)
                readField(entry, content, form);
            entries.push_back(std::move(entry));
        }
        return entries;
    }

    void readField(FileEntry& entry, std::uint64_t content, std::uint64_t form)
    {
        switch (form) {
        case Dwarf::FormLineStrp:
        case Dwarf::FormStrp: {
            const char* table = form == Dwarf::FormStrp ? ".debug_str" : ".debug_line_str";
            const ElfSection* strings = m_elf.find(table);
            const std::uint32_t offset = m_cursor.u32();
            if (strings != nullptr && content == ContentPath)
                entry.path = DwarfCursor(strings->data, offset).text();
            break;
        }
        case Dwarf::FormString: {
            const std::string_view text = m_cursor.text();
            if (content == ContentPath)
                entry.path = text;
            break;
        }
        case Dwarf::FormUData:
        case Dwarf::FormData1:
        case Dwarf::FormData2: {
            const std::uint64_t value = form == Dwarf::FormUData ? m_cursor.uleb()
                : form == Dwarf::FormData1                       ? m_cursor.u8()
                                                                 : m_cursor.u16();
            if (content == ContentDirectoryIndex)
                entry.directory = value;
            break;
        }
        case Dwarf::FormData16: m_cursor.skip(16); break;
        default: throw HException("the compiler's line table has a field of an unknown form");
        }
    }

    void readFileNames(const std::string& compilationDirectory)
    {
        const std::vector<FileEntry> directories = readEntries();
        for (const FileEntry& file : readEntries()) {
            std::filesystem::path path = compilationDirectory;
            if (file.directory < directories.size())
                path /= directories[static_cast<std::size_t>(file.directory)].path;
            m_result.files.push_back((path / file.path).lexically_normal().string());
        }
    }

    void advance(std::uint64_t operations)
    {
        m_place.offset += static_cast<std::int64_t>(operations * m_minimumLength);
    }

    void append()
    {
        if (!m_isStatement || m_line <= 0 || m_file >= m_result.files.size())
            return;
        auto& lines = m_result.lines;
        if (!lines.empty() && lines.back().place == m_place)
            lines.pop_back(); // of several rows for one instruction the last one counts
        lines.push_back({m_place, static_cast<unsigned>(m_file), static_cast<int>(m_line)});
    }

    void step()
    {
        const unsigned opcode = m_cursor.u8();
        if (opcode >= m_opcodeBase) {
            const unsigned adjusted = opcode - m_opcodeBase;
            advance(adjusted / m_lineRange);
            m_line += m_lineBase + static_cast<int>(adjusted % m_lineRange);
            append();
        } else if (opcode == 0) {
            extended();
        } else {
            standard(opcode);
        }
    }

    void extended()
    {
        const std::uint64_t length = m_cursor.uleb();
        const std::size_t next = m_cursor.at() + static_cast<std::size_t>(length);
        const unsigned opcode = length > 0 ? m_cursor.u8() : 0;
        if (opcode == EndSequence) {
            m_place = {};
            m_file = 1;
            m_line = 1;
            m_isStatement = m_defaultIsStatement;
        } else if (opcode == SetAddress) {
            const auto it = m_section.relocations.find(static_cast<std::uint32_t>(m_cursor.at()));
            m_place = it != m_section.relocations.end() ? m_elf.target(it->second) : ElfPlace{};
        }
        m_cursor = DwarfCursor(m_section.data, next);
    }

    void standard(unsigned opcode)
    {
        switch (opcode) {
        case Copy: append(); break;
        case AdvancePC: advance(m_cursor.uleb()); break;
        case AdvanceLine: m_line += m_cursor.sleb(); break;
        case SetFile: m_file = m_cursor.uleb(); break;
        case NegateStatement: m_isStatement = !m_isStatement; break;
        case ConstAddPC: advance((255 - m_opcodeBase) / m_lineRange); break;
        case FixedAdvancePC: m_place.offset += m_cursor.u16(); break;
        default:
            for (unsigned i = 0; i < m_operandCounts[opcode]; ++i)
                m_cursor.uleb();
            break;
        }
    }

    const ElfObject& m_elf;
    const ElfSection& m_section;
    DwarfCursor m_cursor;
    DwarfLines m_result;
    unsigned m_minimumLength = 1;
    bool m_defaultIsStatement = true;
    bool m_isStatement = true;
    int m_lineBase = 0;
    unsigned m_lineRange = 1;
    unsigned m_opcodeBase = 1;
    std::vector<std::uint8_t> m_operandCounts;
    ElfPlace m_place;
    std::uint64_t m_file = 1;
    std::int64_t m_line = 1;
};

} // namespace

DwarfLines readDwarfLines(const ElfObject& elf, std::uint64_t offset, const std::string& directory)
{
    const ElfSection* section = elf.find(".debug_line");
    if (section == nullptr)
        return {};
    return LineReader(elf, *section, static_cast<std::size_t>(offset)).read(directory);
}
