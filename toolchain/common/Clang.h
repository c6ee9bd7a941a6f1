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

/// The start of a call of clang for the MSP430, with messages in the form of ours.
std::vector<std::string> clangCommand(const PreprocessorOptions& options);

/// Runs clang, which prints its own messages. Throws FatalDiagnostic if it fails or isn't there.
void runClang(const std::vector<std::string>& words, Diagnostics& diagnostics);
