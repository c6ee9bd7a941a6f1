#pragma once

#include <span>
#include <string>

/// `gantry pack SOLUTION OUT`: writes a solution with its files into one compressed file. Returns 0
/// also when files were left out, which it reports; throws UsageError and HException.
int packCommand(std::span<const std::string> arguments);
