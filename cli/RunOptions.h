#pragma once

#include "target/SimulatedHMonitor.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

/// What a call of `gantry run` asks for.
struct RunOptions {
    std::string program;
    std::string device = "generic";
    std::string type; ///< format id; empty to go by the file's name
    std::optional<unsigned> address;
    std::optional<unsigned> fill;
    std::optional<unsigned> pc;
    RunLimits limits;
    std::vector<std::string> breakpoints;
    std::string input;       ///< a file in place of standard input
    std::string peripherals; ///< a JavaScript file; empty for none
    std::optional<unsigned> trace;
    bool counts = false;
    bool registers = false;
    bool stats = false;
    std::vector<std::string> arguments;
};

/// Throws UsageError for what makes no sense.
RunOptions parseRunOptions(std::span<const std::string> words);

/// A decimal number, or a hexadecimal one behind "0x"; nothing for any other text.
std::optional<std::uint64_t> parseAddress(const std::string& text);
