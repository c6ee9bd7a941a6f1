#pragma once

#include "TestFolder.h"
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
