#pragma once

#include "toolchain/common/Diagnostics.h"

#include <span>
#include <string>

/// The archiver: makes a library from objects, or lists one.
void kar(std::span<const std::string> words, Diagnostics& diagnostics);
