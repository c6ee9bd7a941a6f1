#pragma once

#include "toolchain/common/Options.h"
#include "toolchain/kld/Placement.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

enum class ChecksumAlgorithm { Crc16, Crc32, Sum, Xor };

struct ChecksumRequest {
    std::vector<std::string> sections;
    ChecksumAlgorithm algorithm = ChecksumAlgorithm::Crc16;
};

/// What a call of kld asks for.
struct LinkerOptions {
    bool verbose = false;
    bool debugInformation = false;
    bool suppressWarnings = false;
    bool warningsAreErrors = false;
    bool extendedCore = false;
    bool peepholes = false;
    bool jumpThreading = false;
    bool tailMerging = false;
    std::string output;
    std::string mapFile;
    std::vector<Placement> placements;
    std::set<std::string> loadedSections; ///< by -G NAME=L
    std::vector<std::pair<std::string, std::string>> definitions;
    std::vector<std::string> keptSymbols;
    std::vector<ChecksumRequest> checksums;
};

/// The command line as options of the tool; they write to `options`, which must outlive them.
std::vector<ToolOption> linkerOptionTable(LinkerOptions& options);
