#include "toolchain/common/LibraryIndex.h"

#include <charconv>

void LibraryIndex::append(std::string& text, unsigned member, std::string_view symbol)
{
    text += std::to_string(member);
    text += ' ';
    text += symbol;
    text += '\n';
}

std::vector<LibraryIndex::Entry> LibraryIndex::parse(std::string_view text)
{
    std::vector<Entry> entries;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        if (end == std::string_view::npos)
            break;
        const std::string_view line = text.substr(0, end);
        Entry entry{};
        const auto [rest, error] =
            std::from_chars(line.data(), line.data() + line.size(), entry.member);
        const auto length = static_cast<std::size_t>(rest - line.data());
        if (error != std::errc() || length + 1 >= line.size() || *rest != ' ')
            break;
        entry.symbol = line.substr(length + 1);
        entries.push_back(entry);
        text.remove_prefix(end + 1);
    }
    return entries;
}
