#include "toolchain/kld/LinkerSymbols.h"

#include "objfile/model/TOBFExpr.h"
#include "toolchain/kld/LinkImage.h"

#include <algorithm>

namespace {

constexpr std::uint32_t WatchdogRegister = 0x0120; // WDTCTL of the families before the 5xx

bool isRam(const TOBFSection* section)
{
    return section->sectionKind() == SectionKind::Data
        || section->sectionKind() == SectionKind::Zeroed;
}

std::uint32_t endOf(TOBFSection* section)
{
    return section->lowestAddress() == TOBFSection::NoAddress
        ? 0
        : static_cast<std::uint32_t>(section->highestAddress()) + 1;
}

/// The memory that data was placed in, for programs whose link names no segment RAM.
std::uint32_t endOfDataMemory(const LinkImage& image)
{
    std::uint32_t end = 0;
    for (const Placement& placement : image.options().placements)
        for (const std::string& name : placement.sections) {
            const TOBFSection* section = image.module()->findSection(HString::intern(name));
            const bool isData = section != nullptr ? isRam(section) : name == "UDATA0";
            if (isData)
                for (const MemoryRange& range : placement.ranges)
                    end = std::max(end, range.end);
        }
    return end;
}

std::int64_t valueOf(const TOBFSymbol* symbol)
{
    const TOBFValue value = TOBFSymbolExpr(const_cast<TOBFSymbol*>(symbol)).evaluate();
    return value.failed ? 0 : value.value;
}

std::int64_t stackTop(const LinkImage& image)
{
    const TOBFSymbol* address = image.findDefinition("___RAM_Address");
    const TOBFSymbol* size = image.findDefinition("___RAM_Size");
    if (address != nullptr && size != nullptr)
        return valueOf(address) + valueOf(size);
    return endOfDataMemory(image);
}

std::int64_t heapStart(const LinkImage& image)
{
    std::uint32_t end = 0;
    for (TOBFSection* section : image.module()->sections())
        if (isRam(section))
            end = std::max(end, endOf(section));
    if (end == 0)
        if (const TOBFSymbol* address = image.findDefinition("___RAM_Address"))
            end = static_cast<std::uint32_t>(valueOf(address));
    return (end + 1) & ~1u;
}

std::int64_t sectionValue(const LinkImage& image, std::string_view symbol)
{
    for (const char* const suffix : {"_start", "_end", "_size"}) {
        const std::string_view name = LinkerSymbols::sectionOf(symbol, suffix);
        TOBFSection* section =
            name.empty() ? nullptr : image.module()->findSection(HString::intern(name));
        if (section == nullptr || section->lowestAddress() == TOBFSection::NoAddress)
            continue;
        const std::string_view kind = suffix;
        return kind == "_start" ? section->lowestAddress()
            : kind == "_end"    ? endOf(section)
                                : section->getSize();
    }
    return 0;
}

} // namespace

std::string_view LinkerSymbols::sectionOf(std::string_view symbol, std::string_view suffix)
{
    constexpr std::string_view Prefix = "__";
    if (!symbol.starts_with(Prefix) || !symbol.ends_with(suffix)
        || symbol.size() <= Prefix.size() + suffix.size())
        return {};
    return symbol.substr(Prefix.size(), symbol.size() - Prefix.size() - suffix.size());
}

bool LinkerSymbols::isKnown(std::string_view symbol)
{
    for (const char* const name :
         {StackTop, HeapStart, WatchdogControl, InitTableStart, InitTableEnd})
        if (symbol == name)
            return true;
    return symbol.starts_with("__checksum_") || !sectionOf(symbol, "_start").empty()
        || !sectionOf(symbol, "_end").empty() || !sectionOf(symbol, "_size").empty();
}

void LinkerSymbols::update(LinkImage& image)
{
    for (const auto& [name, symbol] : image.linkerSymbols()) {
        const std::string_view text = name->view();
        std::int64_t value = 0;
        if (symbol->definition()->kind() != TOBFKind::ConstExpr)
            continue; // it is a label
        if (text == StackTop)
            value = stackTop(image);
        else if (text == HeapStart)
            value = heapStart(image);
        else if (text == WatchdogControl)
            value = WatchdogRegister;
        else
            value = sectionValue(image, text);
        symbol->setDefinition(new TOBFConstExpr(value));
    }
}
