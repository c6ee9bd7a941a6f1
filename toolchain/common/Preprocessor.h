#pragma once

#include "toolchain/common/Clang.h"

#include <string>

/// Preprocesses an assembly source and returns its text with line markers. The preprocessor prints
/// its own messages, in the forms of ours. Throws FatalDiagnostic if it fails.
std::string preprocessAssembly(const std::string& path, const PreprocessorOptions& options,
                               Diagnostics& diagnostics);
