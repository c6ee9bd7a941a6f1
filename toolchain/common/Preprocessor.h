#pragma once

#include "toolchain/common/Diagnostics.h"

#include <string>
#include <vector>

/// What the C preprocessor is told.
struct PreprocessorOptions {
    std::vector<std::string> definitions;   ///< NAME or NAME=VALUE
    std::vector<std::string> undefinitions;
    std::vector<std::string> userIncludes;
    std::vector<std::string> systemIncludes;
};

/// Preprocesses an assembly source and returns its text with line markers. What the preprocessor
/// says is reported at its place; an error leaves the text empty. Throws HException if there is no
/// preprocessor.
std::string preprocessAssembly(const std::string& path, const PreprocessorOptions& options,
                               Diagnostics& diagnostics);

/// Hands the lines that a compiler of the LLVM family printed to the diagnostics, in their forms.
/// Anything that isn't a diagnostic is left out.
void reportCompilerOutput(const std::string& output, Diagnostics& diagnostics);
