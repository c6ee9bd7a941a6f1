#pragma once

#include <span>

class LoadFileInterface;
class TOBFModule;

/// Machine code as disassembled text on the standard output.
namespace CodeDump {

/// The bytes from `address` on, one instruction a line. Bytes that make no whole instruction, at an
/// odd address or at the end, stand there alone.
void bytes(unsigned address, std::span<const unsigned char> bytes);

/// The encoded items of the code sections, with a label ahead of each function and public symbol.
/// Sections that aren't placed start at 0.
void module(TOBFModule* module);

/// Every section.
void loadFile(LoadFileInterface& file);

} // namespace CodeDump
