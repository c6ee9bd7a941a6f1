#pragma once

#include <span>
#include <string>

/// gantry build: builds a solution and prints what the build log holds.
int buildCommand(std::span<const std::string> arguments);
