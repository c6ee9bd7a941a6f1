#pragma once

#include <span>
#include <string>

/// `gantry dump FILE [--sections] [--symbols] [--types] [--lines] [--listing] [--disassembly]`:
/// shows an object, executable, library or load file. Without an option it shows the sections and
/// the symbols.
int dumpCommand(std::span<const std::string> arguments);
