#pragma once

#include <string>
#include <vector>

/// The contents of a source file. Throws AsmError if it can't be read or isn't a regular file.
std::string readSource(const std::string& path);

/// The path of an included file, sought beside the including one and then in the folders; empty if
/// there is none.
std::string findInclude(const std::string& name, const std::string& includer,
                        const std::vector<std::string>& folders);
