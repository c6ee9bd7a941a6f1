#include "base/ProgramLocation.h"

std::filesystem::path programDirectory()
{
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::filesystem::current_path() : program.parent_path();
}

std::filesystem::path installationRoot() { return programDirectory().parent_path(); }
