#pragma once

#include <span>
#include <string>

/// `gantry script`: runs a file of JavaScript, or is a console for it.
int scriptCommand(std::span<const std::string> arguments);
