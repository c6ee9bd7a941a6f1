#pragma once

#include <filesystem>

/// The folder of the running program.
std::filesystem::path programDirectory();

/// The root of the installation: the folder above the program's own `bin`.
std::filesystem::path installationRoot();
