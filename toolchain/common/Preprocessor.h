#pragma once

#include "toolchain/common/Diagnostics.h"

#include <string>
#include <vector>

/// What the C preprocessor is told.
struct PreprocessorOptions {
    std::vector<std::string> definitions; ///< NAME or NAME=VALUE
    std::vector<std::string> undefinitions;
    std::vector<std::string> userIncludes;
    /// Without any, the include folder of the installation.
    std::vector<std::string> systemIncludes;
    bool suppressWarnings = false;
    bool warningsAreErrors = false;
};

/// Preprocesses an assembly source and returns its text with line markers. The preprocessor prints
/// its own messages, in the forms of ours. Throws FatalDiagnostic if it fails.
std::string preprocessAssembly(const std::string& path, const PreprocessorOptions& options,
                               Diagnostics& diagnostics);
