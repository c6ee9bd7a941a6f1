#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The index of a library: which member defines which public symbol, so that a linker need not read
/// members that it doesn't use. It is the library's first member, a line of text for each symbol:
/// the number of the member among the object members, from 0, a blank, and the symbol's name.
namespace LibraryIndex {

constexpr const char* MemberName = "__symbols__";

struct Entry {
    unsigned member;
    std::string_view symbol;
};

void append(std::string& text, unsigned member, std::string_view symbol);

/// The entries refer to the text. A line that isn't of the form ends the list.
std::vector<Entry> parse(std::string_view text);

} // namespace LibraryIndex
