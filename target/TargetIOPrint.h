#pragma once

#include "target/TargetIOArguments.h"

#include <string>

/// Formats as printf does, with the arguments in target memory. Every width and precision is
/// capped, and a conversion that isn't known stands for itself, so that no format of a program's
/// can harm the host. `%n` stores the count in target memory.
std::string printTargetFormat(const std::string& format, TargetIOArguments& arguments);
