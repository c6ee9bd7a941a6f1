#pragma once

#include <span>
#include <string>

/// `gantry forth`: interprets Forth from files or standard input; a console if that is a terminal.
int forthCommand(std::span<const std::string> arguments);
