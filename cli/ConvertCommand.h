#pragma once

#include <span>
#include <string>

/// `gantry convert IN OUT …`: reads one load-file format and writes another. Returns 0; throws
/// UsageError, and HException with no output file left.
int convertCommand(std::span<const std::string> arguments);
