#pragma once

#include "base/HException.h"
#include "objfile/loadfiles/LoadFileFactory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <unistd.h>

/// A folder of its own for a test.
class ScratchFolder {
public:
    explicit ScratchFolder(const std::string& name)
        : m_path(std::filesystem::path(testing::TempDir())
                 / (name + "-" + std::to_string(::getpid())))
    {
        std::filesystem::remove_all(m_path);
        std::filesystem::create_directories(m_path);
    }

    std::string path(const std::string& name) const { return (m_path / name).string(); }

    std::string make(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return path(name);
    }

    std::string contents(const std::string& name) const
    {
        std::ifstream in(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

private:
    std::filesystem::path m_path;
};

/// The bytes of one section, comparable in a test.
struct ByteRun {
    unsigned address;
    std::vector<unsigned char> bytes;
    friend bool operator==(const ByteRun&, const ByteRun&) = default;
};

inline std::vector<ByteRun> runsOf(const LoadFileSections::List& sections)
{
    std::vector<ByteRun> runs;
    for (const auto& section : sections) {
        const unsigned char* data = section->data(false);
        runs.push_back({section->address(), {data, data + section->length()}});
    }
    return runs;
}

inline std::vector<ByteRun> runsOf(LoadFileInterface& file)
{
    return runsOf(file.loadFileSections().sections());
}

inline std::unique_ptr<LoadFileInterface> openLoadFile(const std::string& path, const char* type)
{
    return std::unique_ptr<LoadFileInterface>(
        LoadFileFactory::instance()->create(path.c_str(), type));
}
