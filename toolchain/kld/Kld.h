#pragma once

#include "toolchain/common/Diagnostics.h"

#include <span>
#include <string>

/// The linker: objects and libraries become an executable.
void kld(std::span<const std::string> words, Diagnostics& diagnostics);
