#pragma once

#include <span>
#include <string>

/// `gantry check FILE…`: reports what is wrong with solutions and the other files that users write.
/// Returns 0 if there are no errors, warnings or not, else 1; throws UsageError.
int checkCommand(std::span<const std::string> arguments);
