#pragma once

#include "toolchain/common/Diagnostics.h"

#include <span>
#include <string>

/// The place of a Basic compiler, which this toolchain doesn't have: every use but `--help` fails.
void kbc(std::span<const std::string> words, Diagnostics& diagnostics);
