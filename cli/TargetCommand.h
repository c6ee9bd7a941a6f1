#pragma once

#include <span>
#include <string>

/// `gantry target`: lists the user's targets, and programs, verifies, erases, locks and reads them.
int targetCommand(std::span<const std::string> arguments);
