#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <stdlib.h>

/// A folder of its own, removed at the end.
class TestFolder {
public:
    TestFolder()
    {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "gantry-test-XXXXXX").string();
        m_path = mkdtemp(pattern.data());
    }
    ~TestFolder() { std::filesystem::remove_all(m_path); }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    std::string operator/(const std::string& name) const { return (m_path / name).string(); }
    std::string write(const std::string& name, const std::string& text) const
    {
        std::filesystem::create_directories((m_path / name).parent_path());
        std::ofstream(*this / name, std::ios::binary) << text;
        return *this / name;
    }
    std::string read(const std::string& name) const
    {
        std::ifstream in(*this / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    bool has(const std::string& name) const { return std::filesystem::exists(m_path / name); }

private:
    std::filesystem::path m_path;
};
