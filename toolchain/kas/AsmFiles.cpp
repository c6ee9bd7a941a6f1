#include "toolchain/kas/AsmFiles.h"

#include "toolchain/kas/AsmLine.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

std::string readSource(const std::string& path)
{
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        throw AsmError{"can't read the file '" + path + "'"};
    std::ifstream in(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (!in)
        throw AsmError{"can't read the file '" + path + "'"};
    return text;
}

std::string findInclude(const std::string& name, const std::string& includer,
                        const std::vector<std::string>& folders)
{
    std::error_code error;
    if (fs::path(name).is_absolute())
        return fs::is_regular_file(name, error) ? name : std::string();
    const fs::path beside = fs::path(includer).parent_path() / name;
    if (fs::is_regular_file(beside, error))
        return beside.string();
    for (const std::string& folder : folders) {
        const fs::path path = fs::path(folder) / name;
        if (fs::is_regular_file(path, error))
            return path.string();
    }
    return {};
}
