#include "toolchain/common/Preprocessor.h"

#include "toolchain/common/Process.h"

#include <charconv>
#include <sstream>
#include <string_view>

namespace {

constexpr const char* Compiler = "clang";

struct Word {
    std::string_view text;
    Severity severity;
};
constexpr Word Words[] = {{": fatal error: ", Severity::Error},
                          {": error: ", Severity::Error},
                          {": warning: ", Severity::Warning},
                          {": note: ", Severity::Note}};

/// Splits `FILE:LINE:COLUMN` or `FILE:LINE`; a place without a line has none.
SourceLocation parsePlace(std::string_view place)
{
    const auto takeNumber = [&place](int& number) {
        const std::size_t colon = place.rfind(':');
        if (colon == std::string_view::npos)
            return false;
        const std::string_view digits = place.substr(colon + 1);
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
        if (error != std::errc() || end != digits.data() + digits.size())
            return false;
        place = place.substr(0, colon);
        return true;
    };
    int last = 0, line = 0;
    if (!takeNumber(last))
        return {};
    if (!takeNumber(line))
        line = last;
    return {std::string(place), line};
}

void report(Diagnostics& diagnostics, Severity severity, const SourceLocation& where,
            const std::string& text)
{
    switch (severity) {
    case Severity::Note: diagnostics.note(where, text); break;
    case Severity::Warning: diagnostics.warning(where, text); break;
    default: diagnostics.error(where, text); break;
    }
}

} // namespace

std::string preprocessAssembly(const std::string& path, const PreprocessorOptions& options,
                               Diagnostics& diagnostics)
{
    std::vector<std::string> words = {Compiler, "--target=msp430", "-E", "-x", "assembler-with-cpp",
                                      "-nostdinc", "-fno-caret-diagnostics", "-fno-color-diagnostics"};
    const auto append = [&words](const char* option, const std::vector<std::string>& values) {
        for (const std::string& value : values)
            words.push_back(option + value);
    };
    append("-D", options.definitions);
    append("-U", options.undefinitions);
    append("-I", options.userIncludes);
    for (const std::string& folder : options.systemIncludes)
        words.insert(words.end(), {"-isystem", folder});
    words.insert(words.end(), {"--", path});
    const ProcessResult result = runProcess(words);
    reportCompilerOutput(result.errors, diagnostics);
    if (result.status != 0 && !diagnostics.failed())
        diagnostics.error({path, 0}, "the preprocessor failed");
    return result.status == 0 ? result.output : std::string();
}

void reportCompilerOutput(const std::string& output, Diagnostics& diagnostics)
{
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        for (const Word& word : Words) {
            const std::size_t at = line.find(word.text);
            if (at == std::string::npos)
                continue;
            report(diagnostics, word.severity, parsePlace(std::string_view(line).substr(0, at)),
                   line.substr(at + word.text.size()));
            break;
        }
    }
}
