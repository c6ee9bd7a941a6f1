#pragma once

#include "toolchain/common/Diagnostics.h"
#include "toolchain/common/Options.h"

#include <span>
#include <string>

/// A tool's own work: the words behind the program's name, and where its messages go. It returns
/// when it is done; what it reported decides the exit status. It may throw HException.
using ToolBody = void (*)(std::span<const std::string> words, Diagnostics& diagnostics);

/// Runs the body and turns what it throws into a message of the tool. Exit status 0 if nothing was
/// reported as an error, else 1.
int runTool(const char* name, ToolBody body, int argc, char** argv);

/// Answers `--help` and `--version`, alone on the command line, on the standard output. Returns
/// whether it did.
bool answerToolHelp(const ToolDescription& tool, std::span<const ToolOption> options,
                    std::span<const std::string> words);
