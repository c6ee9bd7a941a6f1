#pragma once

#include "toolchain/common/Diagnostics.h"

#include <span>
#include <string>

/// `kex IN -o STEM -Fformat`: writes an executable in a load-file format, as STEM.format.
void kex(std::span<const std::string> words, Diagnostics& diagnostics);
