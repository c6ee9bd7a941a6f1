#pragma once

#include <span>
#include <string>

/// `gantry run`: runs an executable or a load file on the simulator.
int runCommand(std::span<const std::string> arguments);
