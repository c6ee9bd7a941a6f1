#include "toolchain/common/Preprocessor.h"

#include "base/ProgramLocation.h"
#include "toolchain/common/Process.h"
#include "toolchain/common/TemporaryFile.h"

#include <fstream>
#include <iterator>

namespace {

using Words = std::vector<std::string>;

void append(Words& words, const char* option, const Words& values)
{
    for (const std::string& value : values)
        words.push_back(option + value);
}

Words command(const PreprocessorOptions& options)
{
    Words words = {"clang",
                   "--target=msp430",
                   "-E",
                   "-x",
                   "assembler-with-cpp",
                   "-nostdlibinc",
                   "-fno-color-diagnostics",
                   "-fdiagnostics-format=msvc",
                   "-fno-show-column",
                   "-fno-caret-diagnostics"};
    append(words, "-D", options.definitions);
    append(words, "-U", options.undefinitions);
    append(words, "-I", options.userIncludes);
    append(words, "-isystem", options.systemIncludes);
    if (options.systemIncludes.empty())
        words.push_back("-isystem" + (installationRoot() / "include").string());
    if (options.suppressWarnings)
        words.emplace_back("-w");
    if (options.warningsAreErrors)
        words.emplace_back("-Werror");
    return words;
}

} // namespace

std::string preprocessAssembly(const std::string& path, const PreprocessorOptions& options,
                               Diagnostics& diagnostics)
{
    const TemporaryFile output(".s");
    Words words = command(options);
    words.insert(words.end(), {"-o", output.path(), "--", path});
    const int status = runProcess(words);
    if (status < 0)
        diagnostics.fatal("the preprocessor clang is not installed; install the package clang");
    if (status > 1)
        diagnostics.fatal("the preprocessor ended with status " + std::to_string(status));
    if (status == 1) // it has said why
        throw FatalDiagnostic("preprocessing failed");
    std::ifstream in(output.path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}
