#pragma once

#include "base/HException.h"
#include "objfile/format/HFileInputByteStream.h"
#include "objfile/msp430/TOBFMSP430Reader.h"
#include "toolchain/common/Diagnostics.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <unistd.h>

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

/// What a tool said; empty if it succeeded in silence.
using Tool = void (*)(std::span<const std::string> words, Diagnostics& diagnostics);
inline std::string runTool(Tool tool, const char* name, const std::vector<std::string>& words)
{
    std::string said;
    Diagnostics diagnostics(name, [&](const std::string& line) { said += line + "\n"; });
    try {
        tool(words, diagnostics);
    } catch (const FatalDiagnostic&) {
    } catch (const HException& error) {
        diagnostics.error(error.message());
    }
    return said;
}

struct ReleaseReadModule {
    void operator()(TOBFModule* module) const { TOBFReader::release(module); }
};
inline std::unique_ptr<TOBFModule, ReleaseReadModule> readModule(const std::string& path)
{
    const HFileInputByteStream stream(path);
    TOBFMSP430Reader reader(&stream, true);
    return std::unique_ptr<TOBFModule, ReleaseReadModule>(reader.readFile());
}
