#pragma once

#include "toolchain/common/Diagnostics.h"

#include <span>
#include <string>

/// The C compiler: preprocesses with -E, otherwise writes an object file.
void kcc(std::span<const std::string> words, Diagnostics& diagnostics);
