#pragma once

#include "TestFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <sys/wait.h>

/// What a call of the `gantry` program came to.
struct Outcome {
    int status;
    std::string output;
    std::string errors;
};

inline std::string readFile(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// A folder for a suite's files, and calls of `gantry` with them.
class CliTest : public testing::Test {
protected:
    std::string path(const std::string& name) const { return (folder / name).string(); }

    std::string make(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(folder / name, std::ios::binary) << bytes;
        return path(name);
    }

    std::string contents(const std::string& name) const { return readFile(folder / name); }

    /// Of a user without settings. `arguments` are the shell's.
    Outcome gantry(const std::string& arguments) const
    {
        return shell(GANTRY_ROOT_TREE "/bin/gantry " + arguments);
    }

    /// Runs a command of the shell in a home of its own.
    Outcome shell(const std::string& command) const
    {
        const int status = std::system(("export HOME=" + path("home") + "; (" + command + ") >"
                                        + path("stdout") + " 2>" + path("stderr"))
                                           .c_str());
        return {WEXITSTATUS(status), contents("stdout"), contents("stderr")};
    }

private:
    const TestFolder m_folder;

protected:
    const std::filesystem::path folder = std::filesystem::path(m_folder / "x").parent_path();
};

using Words = std::vector<unsigned>;

/// One data record of an Intel hex file.
inline std::string hexRecord(unsigned address, const Words& words)
{
    std::vector<unsigned> bytes = {static_cast<unsigned>(words.size()) * 2, address >> 8,
                                   address & 0xFF, 0};
    for (const unsigned word : words)
        bytes.insert(bytes.end(), {word & 0xFF, word >> 8});
    std::string text = ":";
    unsigned sum = 0;
    char digits[4];
    for (const unsigned byte : bytes) {
        std::snprintf(digits, sizeof digits, "%02X", byte);
        text += digits;
        sum += byte;
    }
    std::snprintf(digits, sizeof digits, "%02X", (0U - sum) & 0xFF);
    return text + digits + "\n";
}

inline constexpr const char* hexEnd = ":00000001FF\n";
