#pragma once

#include "toolchain/common/Diagnostics.h"

#include <span>
#include <string>

/// `kmh MAP -o HEADER`: makes a C header of the segments, registers and bit fields of a memory map.
void kmh(std::span<const std::string> words, Diagnostics& diagnostics);
