#include "toolchain/kcc/dwarf/DwarfUnit.h"

#include "toolchain/kcc/dwarf/DwarfCursor.h"

namespace {

[[noreturn]] void fail(const std::string& what)
{
    throw HException("the compiler's debug information cannot be read (" + what + ")");
}

constexpr unsigned AddressSize = 2;

bool isStrx(unsigned form)
{
    return form == Dwarf::FormStrx || (form >= Dwarf::FormStrx1 && form <= Dwarf::FormStrx4);
}

bool isAddrx(unsigned form)
{
    return form == Dwarf::FormAddrx || (form >= Dwarf::FormAddrx1 && form <= Dwarf::FormAddrx4);
}

/// The size of a form of fixed size; 0 for the others.
unsigned fixedSize(unsigned form)
{
    switch (form) {
    case Dwarf::FormData1:
    case Dwarf::FormFlag:
    case Dwarf::FormRef1:
    case Dwarf::FormStrx1:
    case Dwarf::FormAddrx1: return 1;
    case Dwarf::FormAddress: return AddressSize;
    case Dwarf::FormData2:
    case Dwarf::FormRef2:
    case Dwarf::FormStrx2:
    case Dwarf::FormAddrx2: return 2;
    case Dwarf::FormStrx3:
    case Dwarf::FormAddrx3: return 3;
    case Dwarf::FormData4:
    case Dwarf::FormRef4:
    case Dwarf::FormStrp:
    case Dwarf::FormLineStrp:
    case Dwarf::FormSectionOffset:
    case Dwarf::FormRefAddress:
    case Dwarf::FormStrx4:
    case Dwarf::FormAddrx4: return 4;
    case Dwarf::FormData8:
    case Dwarf::FormRef8: return 8;
    default: return 0;
    }
}

void readValue(DwarfCursor& cursor, DwarfValue& value)
{
    if (const unsigned size = fixedSize(value.form)) {
        value.number = cursor.number(size);
        return;
    }
    switch (value.form) {
    case Dwarf::FormFlagPresent: value.number = 1; break;
    case Dwarf::FormImplicitConst: break;
    case Dwarf::FormSData: value.number = static_cast<std::uint64_t>(cursor.sleb()); break;
    case Dwarf::FormUData:
    case Dwarf::FormRefUData:
    case Dwarf::FormStrx:
    case Dwarf::FormAddrx:
    case Dwarf::FormLoclistx:
    case Dwarf::FormRnglistx: value.number = cursor.uleb(); break;
    case Dwarf::FormString: value.text = cursor.text(); break;
    case Dwarf::FormData16: value.block = cursor.block(16); break;
    case Dwarf::FormExpression:
    case Dwarf::FormBlock: value.block = cursor.block(cursor.uleb()); break;
    case Dwarf::FormBlock1: value.block = cursor.block(cursor.u8()); break;
    case Dwarf::FormBlock2: value.block = cursor.block(cursor.u16()); break;
    case Dwarf::FormBlock4: value.block = cursor.block(cursor.u32()); break;
    default: fail("an attribute has the unknown form " + std::to_string(value.form));
    }
}

} // namespace

const DwarfValue* DwarfEntry::find(unsigned attribute) const
{
    for (const DwarfValue& value : values)
        if (value.attribute == attribute)
            return &value;
    return nullptr;
}

std::uint64_t DwarfEntry::number(unsigned attribute, std::uint64_t otherwise) const
{
    const DwarfValue* value = find(attribute);
    return value != nullptr ? value->number : otherwise;
}

std::string_view DwarfEntry::text(unsigned attribute) const
{
    const DwarfValue* value = find(attribute);
    return value != nullptr ? value->text : std::string_view();
}

DwarfUnit::DwarfUnit(const ElfObject& elf) : m_elf(elf)
{
    DwarfCursor cursor(data(".debug_info"));
    const std::uint64_t length = cursor.u32();
    const std::size_t end = cursor.at() + static_cast<std::size_t>(length);
    if (cursor.u16() != 5)
        fail("it isn't of version 5");
    cursor.skip(1); // kind of unit
    if (cursor.u8() != AddressSize)
        fail("its addresses aren't of two bytes");
    const std::uint32_t abbreviations = cursor.u32();
    readAbbreviations(abbreviations);
    readEntries(cursor.at(), end);
}

std::span<const std::uint8_t> DwarfUnit::data(const char* section) const
{
    const ElfSection* found = m_elf.find(section);
    if (found == nullptr)
        return {};
    return found->data;
}

void DwarfUnit::readAbbreviations(std::size_t offset)
{
    DwarfCursor cursor(data(".debug_abbrev"), offset);
    while (const std::uint64_t code = cursor.uleb()) {
        Abbreviation abbreviation;
        abbreviation.tag = static_cast<unsigned>(cursor.uleb());
        abbreviation.hasChildren = cursor.u8() != 0;
        for (;;) {
            const auto attribute = static_cast<unsigned>(cursor.uleb());
            const auto form = static_cast<unsigned>(cursor.uleb());
            const std::int64_t implicit = form == Dwarf::FormImplicitConst ? cursor.sleb() : 0;
            if (attribute == 0 && form == 0)
                break;
            abbreviation.fields.push_back({attribute, form, implicit});
        }
        m_abbreviations[code] = std::move(abbreviation);
    }
}

void DwarfUnit::readEntries(std::size_t begin, std::size_t end)
{
    const auto bytes = data(".debug_info");
    if (end > bytes.size())
        fail("it is cut off");
    DwarfCursor cursor(bytes.first(end), begin);
    std::vector<unsigned> open;
    while (!cursor.atEnd()) {
        const std::size_t offset = cursor.at();
        const std::uint64_t code = cursor.uleb();
        if (code == 0) {
            if (open.empty())
                break;
            open.pop_back();
            continue;
        }
        const auto found = m_abbreviations.find(code);
        if (found == m_abbreviations.end())
            fail("an entry has no abbreviation");
        const auto index = static_cast<unsigned>(m_entries.size());
        m_byOffset[offset] = index;
        DwarfEntry entry;
        entry.tag = found->second.tag;
        for (const auto& field : found->second.fields) {
            DwarfValue value;
            value.attribute = field.attribute;
            value.form = field.form;
            value.number = static_cast<std::uint64_t>(field.implicit);
            if (field.form == Dwarf::FormAddress)
                value.place = addressField(bytes.data() + cursor.at());
            readValue(cursor, value);
            entry.values.push_back(value);
        }
        if (!open.empty()) {
            entry.parent = open.back();
            m_entries[entry.parent].children.push_back(index);
        }
        m_entries.push_back(std::move(entry));
        if (index == 0)
            readBases();
        for (DwarfValue& value : m_entries[index].values)
            resolve(value);
        if (found->second.hasChildren)
            open.push_back(index);
    }
    if (m_entries.empty())
        fail("it is empty");
}

void DwarfUnit::readBases()
{
    const DwarfEntry& unit = m_entries.front();
    m_stringOffsetsBase = unit.number(Dwarf::AtStringOffsetsBase, m_stringOffsetsBase);
    m_addressBase = unit.number(Dwarf::AtAddressBase, m_addressBase);
    m_rangeListsBase = unit.number(Dwarf::AtRangeListsBase, m_rangeListsBase);
    m_locationListsBase = unit.number(Dwarf::AtLocationListsBase, m_locationListsBase);
}

/// Follows the indirect forms of strings and addresses.
void DwarfUnit::resolve(DwarfValue& value)
{
    if (isStrx(value.form)) {
        DwarfCursor offsets(data(".debug_str_offsets"),
                            static_cast<std::size_t>(m_stringOffsetsBase + value.number * 4));
        value.text = stringAt(".debug_str", offsets.u32());
    } else if (value.form == Dwarf::FormStrp) {
        value.text = stringAt(".debug_str", value.number);
    } else if (value.form == Dwarf::FormLineStrp) {
        value.text = stringAt(".debug_line_str", value.number);
    } else if (isAddrx(value.form)) {
        value.place = address(value.number);
    }
}

std::string_view DwarfUnit::stringAt(const char* section, std::uint64_t offset) const
{
    return DwarfCursor(data(section), static_cast<std::size_t>(offset)).text();
}

ElfPlace DwarfUnit::address(std::uint64_t index) const
{
    const ElfSection* table = m_elf.find(".debug_addr");
    if (table == nullptr)
        return {};
    const auto at = static_cast<std::uint32_t>(m_addressBase + index * AddressSize);
    const auto it = table->relocations.find(at);
    return it != table->relocations.end() ? m_elf.target(it->second) : ElfPlace{};
}

ElfPlace DwarfUnit::addressField(const std::uint8_t* field) const
{
    const ElfSection* info = m_elf.find(".debug_info");
    const auto at = static_cast<std::uint32_t>(field - info->data.data());
    const auto it = info->relocations.find(at);
    return it != info->relocations.end() ? m_elf.target(it->second) : ElfPlace{};
}

unsigned DwarfUnit::reference(const DwarfEntry& entry, unsigned attribute) const
{
    const DwarfValue* value = entry.find(attribute);
    if (value == nullptr)
        return 0;
    const auto it = m_byOffset.find(value->number);
    return it != m_byOffset.end() ? it->second : 0;
}

std::uint64_t DwarfUnit::listOffset(const char* section, std::uint64_t base,
                                    const DwarfValue& value, unsigned indexForm) const
{
    if (value.form != indexForm)
        return value.number;
    DwarfCursor offsets(data(section), static_cast<std::size_t>(base + value.number * 4));
    return base + offsets.u32();
}

namespace {

ElfPlace operator+(const ElfPlace& place, std::uint64_t distance)
{
    return {place.section, place.offset + static_cast<std::int64_t>(distance)};
}

} // namespace

std::vector<DwarfRange> DwarfUnit::ranges(const DwarfEntry& entry) const
{
    if (const DwarfValue* low = entry.find(Dwarf::AtLowPC)) {
        const DwarfValue* high = entry.find(Dwarf::AtHighPC);
        if (high == nullptr)
            return {};
        const bool isAddress = high->form == Dwarf::FormAddress || isAddrx(high->form);
        return {{low->place, isAddress ? high->place : low->place + high->number}};
    }
    const DwarfValue* list = entry.find(Dwarf::AtRanges);
    if (list == nullptr)
        return {};
    std::vector<DwarfRange> result;
    DwarfCursor cursor(data(".debug_rnglists"),
                       static_cast<std::size_t>(listOffset(".debug_rnglists", m_rangeListsBase,
                                                           *list, Dwarf::FormRnglistx)));
    const DwarfValue* unitLow = root().find(Dwarf::AtLowPC);
    ElfPlace base = unitLow != nullptr ? unitLow->place : ElfPlace{};
    for (;;) {
        switch (cursor.u8()) {
        case Dwarf::RleEndOfList: return result;
        case Dwarf::RleBaseAddressx: base = address(cursor.uleb()); break;
        case Dwarf::RleStartxEndx: {
            const ElfPlace start = address(cursor.uleb());
            result.push_back({start, address(cursor.uleb())});
            break;
        }
        case Dwarf::RleStartxLength: {
            const ElfPlace start = address(cursor.uleb());
            result.push_back({start, start + cursor.uleb()});
            break;
        }
        case Dwarf::RleOffsetPair: {
            const ElfPlace start = base + cursor.uleb();
            result.push_back({start, base + cursor.uleb()});
            break;
        }
        default: fail("a list of ranges has an unknown entry");
        }
    }
}

std::vector<DwarfLocation> DwarfUnit::locations(const DwarfEntry& entry) const
{
    const DwarfValue* location = entry.find(Dwarf::AtLocation);
    if (location == nullptr)
        return {};
    if (location->form != Dwarf::FormLoclistx && location->form != Dwarf::FormSectionOffset)
        return {{std::nullopt, location->block}};
    std::vector<DwarfLocation> result;
    DwarfCursor cursor(data(".debug_loclists"),
                       static_cast<std::size_t>(listOffset(".debug_loclists", m_locationListsBase,
                                                           *location, Dwarf::FormLoclistx)));
    const DwarfValue* unitLow = root().find(Dwarf::AtLowPC);
    ElfPlace base = unitLow != nullptr ? unitLow->place : ElfPlace{};
    for (;;) {
        std::optional<DwarfRange> range;
        switch (cursor.u8()) {
        case Dwarf::LleEndOfList: return result;
        case Dwarf::LleBaseAddressx: base = address(cursor.uleb()); continue;
        case Dwarf::LleStartxEndx: {
            const ElfPlace start = address(cursor.uleb());
            range = {start, address(cursor.uleb())};
            break;
        }
        case Dwarf::LleStartxLength: {
            const ElfPlace start = address(cursor.uleb());
            range = {start, start + cursor.uleb()};
            break;
        }
        case Dwarf::LleOffsetPair: {
            const ElfPlace start = base + cursor.uleb();
            range = {start, base + cursor.uleb()};
            break;
        }
        case Dwarf::LleDefaultLocation: break;
        default: fail("a list of locations has an unknown entry");
        }
        result.push_back({range, cursor.block(cursor.uleb())});
    }
}
