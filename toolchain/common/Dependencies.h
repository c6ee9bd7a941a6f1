#pragma once

#include <string>
#include <string_view>

/// The files of a dependency rule of make, `target: file file \`, joined by ";". Blanks and "#" in
/// names stand behind a backslash, "$" is doubled.
std::string parseDependencies(std::string_view rule);

/// The same for a file; empty if it can't be read.
std::string readDependencies(const std::string& path);
