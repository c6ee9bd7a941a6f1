#pragma once

#include "toolchain/common/Diagnostics.h"

#include <span>
#include <string>

/// The listing writer: an executable's sections with their addresses, bytes and source lines.
void kls(std::span<const std::string> words, Diagnostics& diagnostics);
