#include "toolchain/common/ToolMain.h"

#include "base/HException.h"

#include <cstdio>
#include <new>
#include <vector>

int runTool(const char* name, ToolBody body, int argc, char** argv)
{
    Diagnostics diagnostics(name);
    try {
        const std::vector<std::string> words(argv + 1, argv + argc);
        body(words, diagnostics);
    } catch (const FatalDiagnostic&) {
        return 1; // reported where it was thrown, or by the program that was run
    } catch (const HException& error) {
        diagnostics.error(error.message());
    } catch (const std::bad_alloc&) {
        diagnostics.error("not enough memory");
    }
    return diagnostics.failed() ? 1 : 0;
}

bool answerToolHelp(const ToolDescription& tool, std::span<const ToolOption> options,
                    std::span<const std::string> words)
{
    if (words.size() != 1)
        return false;
    if (words[0] == "--help") {
        std::fputs(toolHelp(tool, options).c_str(), stdout);
        return true;
    }
    if (words[0] == "--version") {
        std::printf("%s %s\n", tool.name, GANTRY_VERSION);
        return true;
    }
    return false;
}
