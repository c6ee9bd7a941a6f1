#include "toolchain/common/Clang.h"

#include "base/ProgramLocation.h"
#include "toolchain/common/Process.h"

namespace {

void append(std::vector<std::string>& words, const char* option,
            const std::vector<std::string>& values)
{
    for (const std::string& value : values)
        words.push_back(option + value);
}

} // namespace

std::vector<std::string> clangCommand(const PreprocessorOptions& options)
{
    std::vector<std::string> words = {"clang",
                                      "--target=msp430",
                                      "-mhwmult=none",
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

void runClang(const std::vector<std::string>& words, Diagnostics& diagnostics)
{
    const int status = runProcess(words);
    if (status < 0)
        diagnostics.fatal("the compiler clang is not installed; install the package clang");
    if (status > 1)
        diagnostics.fatal("the compiler ended with status " + std::to_string(status));
    if (status == 1) // it has said why
        throw FatalDiagnostic("compilation failed");
}
