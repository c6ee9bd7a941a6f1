#pragma once

#include <span>
#include <string>

/// A use of the command line that makes no sense: reported as `gantry: message`, exit status 2.
struct UsageError {
    std::string message;
};

/// One sub-command of `gantry`. `run` takes the words behind the sub-command's name and returns the
/// exit status; it may throw UsageError or HException.
struct Command {
    const char* name;
    const char* usage;
    int (*run)(std::span<const std::string> arguments);
};

/// All sub-commands, in the order of the help text.
std::span<const Command> commands();
