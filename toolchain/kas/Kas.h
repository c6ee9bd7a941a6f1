#pragma once

#include "toolchain/common/Diagnostics.h"

#include <span>
#include <string>

/// `kas [options] FILE -o OBJECT`: assembles a source file.
void kas(std::span<const std::string> words, Diagnostics& diagnostics);

/// True if a source has to go through the C preprocessor: it has a directive of its, or names one
/// of the definitions (NAME or NAME=VALUE).
bool needsPreprocessor(const std::string& text, const std::vector<std::string>& definitions);
