#pragma once

#include "toolchain/kcc/ElfObject.h"

#include <string>
#include <vector>

/// A statement's first instruction.
struct DwarfLine {
    ElfPlace place;
    unsigned file = 0; ///< index into the file names
    int line = 0;      ///< from 1
};

/// The line table of a compilation: the rows that start a statement, by place.
struct DwarfLines {
    std::vector<std::string> files; ///< whole paths
    std::vector<DwarfLine> lines;
};

/// Reads the table at `offset` of .debug_line. Throws HException for one that is malformed.
DwarfLines readDwarfLines(const ElfObject& elf, std::uint64_t offset, const std::string& directory);
