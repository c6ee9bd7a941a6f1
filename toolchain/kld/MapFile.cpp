#include "toolchain/kld/MapFile.h"

#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFInsn.h"
#include "toolchain/common/OutputFile.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace {

class MapText {
public:
    [[gnu::format(printf, 2, 3)]] void line(const char* format, ...)
    {
        char text[2048];
        va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(text, sizeof text, format, arguments);
        va_end(arguments);
        m_text += text;
        m_text += '\n';
    }
    const std::string& text() const { return m_text; }

private:
    std::string m_text;
};

struct PlacedFragment {
    TOBFFragment* fragment;
    std::int32_t start;
    std::int32_t size;
};

std::vector<PlacedFragment> placedFragments(TOBFSection* section)
{
    std::vector<PlacedFragment> result;
    for (TOBFFragment* fragment : section->fragments()) {
        std::int32_t start = -1;
        std::int32_t end = 0;
        for (TOBFInsn* insn : fragment->insns()) {
            if (insn->length() <= 0)
                continue;
            if (start < 0)
                start = insn->pc();
            end = insn->pc() + insn->length();
        }
        if (start >= 0)
            result.push_back({fragment, start, end - start});
    }
    std::stable_sort(result.begin(), result.end(),
                     [](const auto& a, const auto& b) { return a.start < b.start; });
    return result;
}

void writeMemory(MapText& map, const LinkImage& image, const Layout& layout)
{
    map.line("MEMORY\n");
    map.line("  %-15s %8s %8s %8s   %s", "range", "size", "used", "free", "sections");
    for (std::size_t i = 0; i < layout.pools().size(); ++i) {
        const MemoryPool& pool = layout.pools()[i];
        std::string names;
        for (const std::string& name : image.options().placements[i].sections)
            names += (names.empty() ? "" : ", ") + name;
        std::string ranges;
        for (const MemoryRange& range : pool.ranges()) {
            char text[32];
            std::snprintf(text, sizeof text, "%s%05X-%05X", ranges.empty() ? "" : ", ", range.start,
                          range.end - 1);
            ranges += text;
        }
        map.line("  %-15s %8u %8u %8u   %s", ranges.c_str(), pool.total(),
                 pool.total() - pool.free(), pool.free(), names.c_str());
    }
}

void writeSections(MapText& map, LinkImage& image)
{
    map.line("\n\nSECTIONS");
    for (TOBFSection* section : image.module()->sections()) {
        const std::vector<PlacedFragment> fragments = placedFragments(section);
        if (fragments.empty())
            continue;
        map.line("\n  %s (%s%s), %05X-%05X, %u bytes", section->name()->text(),
                 sectionKindName(section->sectionKind()), section->isLoaded() ? ", loaded" : "",
                 section->lowestAddress(), static_cast<unsigned>(section->highestAddress()),
                 section->accumulatedSize());
        for (const PlacedFragment& it : fragments)
            map.line("    %05X %6d  %s", static_cast<unsigned>(it.start), it.size,
                     image.nameOf(it.fragment).c_str());
    }
    map.line("\n  %u items that nothing refers to were left out", image.droppedFragments());
}

void writeSymbols(MapText& map, const LinkImage& image)
{
    struct Row {
        std::string name;
        std::int64_t value;
    };
    std::vector<Row> rows;
    for (const auto& [name, symbol] : image.module()->publicSymbols()) {
        const TOBFValue value = TOBFSymbolExpr(symbol).evaluate();
        if (!value.failed)
            rows.push_back({name->str(), value.value});
    }
    const auto write = [&](const char* title) {
        map.line("\n\nSYMBOLS BY %s\n", title);
        for (const Row& row : rows)
            map.line("  %05llX  %s", static_cast<unsigned long long>(row.value) & 0xFFFFFFFFFULL,
                     row.name.c_str());
    };
    std::sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) { return a.name < b.name; });
    write("NAME");
    std::stable_sort(rows.begin(), rows.end(),
                     [](const Row& a, const Row& b) { return a.value < b.value; });
    write("ADDRESS");
}

} // namespace

void writeMap(LinkImage& image, const Layout& layout, const std::string& path)
{
    MapText map;
    map.line("Map of %s\n\n", image.options().output.c_str());
    writeMemory(map, image, layout);
    writeSections(map, image);
    writeSymbols(map, image);
    OutputFile out(path);
    out.write(map.text());
    out.commit();
}
