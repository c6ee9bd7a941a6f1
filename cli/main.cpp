#include "base/HException.h"
#include "cli/Command.h"

#include <QCoreApplication>

#include <cstdio>
#include <string>
#include <vector>

namespace {

void printUsage(std::FILE* out)
{
    std::fprintf(out, "usage: gantry COMMAND ...\n");
    for (const Command& command : commands())
        std::fprintf(out, "  gantry %s %s\n", command.name, command.usage);
    std::fprintf(out, "  gantry --version\n");
}

int runCommand(const Command& command, const std::vector<std::string>& words)
{
    try {
        return command.run({words.begin() + 1, words.end()});
    } catch (const UsageError& error) {
        std::fprintf(stderr, "gantry: %s\nusage: gantry %s %s\n", error.message.c_str(),
                     command.name, command.usage);
        return 2;
    } catch (const HException& error) {
        std::fprintf(stderr, "gantry: %s\n", error.message().c_str());
        return 1;
    }
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.empty()) {
        printUsage(stderr);
        return 2;
    }
    if (words[0] == "--help" || words[0] == "-h") {
        printUsage(stdout);
        return 0;
    }
    if (words[0] == "--version") {
        std::printf("gantry %s\n", GANTRY_VERSION);
        return 0;
    }
    const QCoreApplication application(argc, argv);
    for (const Command& command : commands())
        if (words[0] == command.name)
            return runCommand(command, words);
    std::fprintf(stderr, "gantry: unknown command \"%s\"; gantry --help lists them\n",
                 words[0].c_str());
    return 2;
}
