#pragma once

#include <string>
#include <string_view>

class LinkImage;

/// Symbols that the linker defines where a program refers to them and nothing else defines them:
///
/// - `__stack_top`: behind the last byte of RAM, where the stack begins
/// - `__heap_start`: behind the program's data
/// - `__watchdog_control`: the register that stops the watchdog, 0x0120 unless defined
/// - `__init_table_start`, `__init_table_end`: what start-up code has to copy and to clear
/// - `__NAME_start`, `__NAME_end`, `__NAME_size`: a section's first address, the one behind its
///   last, and its size in bytes
/// - `__checksum_NAME`: where the checksum of a section stands
namespace LinkerSymbols {

constexpr const char* StackTop = "__stack_top";
constexpr const char* HeapStart = "__heap_start";
constexpr const char* WatchdogControl = "__watchdog_control";
constexpr const char* InitTableStart = "__init_table_start";
constexpr const char* InitTableEnd = "__init_table_end";

/// The section that a name asks about, for the suffix "_start", "_end" or "_size"; empty for
/// others.
std::string_view sectionOf(std::string_view symbol, std::string_view suffix);

/// Whether the linker can give this symbol a value.
bool isKnown(std::string_view symbol);

/// Gives the symbols that are in use the values that the present layout makes; those of sections
/// without bytes are 0.
void update(LinkImage& image);

} // namespace LinkerSymbols
