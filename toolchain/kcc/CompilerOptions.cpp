#include "toolchain/kcc/CompilerOptions.h"

#include "base/HException.h"

namespace {

/// `-O-N` for size, `-O+N` for speed, N from 0 (none) to 9; otherwise the compiler's own levels.
std::string optimizationLevel(const std::string& value)
{
    if (value == "-9" || value == "s" || value == "z")
        return value == "z" ? "-Oz" : "-Os";
    const bool graded = value.size() == 2 && (value[0] == '-' || value[0] == '+');
    if (graded && value[1] >= '0' && value[1] <= '9') {
        if (value[1] == '0')
            return "-O0";
        if (value[1] <= '3')
            return "-O1";
        return value[0] == '-' ? "-Os" : "-O2";
    }
    if (value.size() == 1 && value[0] >= '0' && value[0] <= '3')
        return "-O" + value;
    throw HException("unknown option -O" + value);
}

} // namespace

std::vector<ToolOption> compilerOptionTable(CompilerOptions& options)
{
    using Text = const std::string&;
    const auto flag = [](bool& it) { return [&it](Text) { it = true; }; };
    const auto name = [](std::string& it) { return [&it](Text value) { it = value; }; };
    const auto ignore = [](Text) {};
    const auto collect = [](std::vector<std::string>& list) {
        return [&list](Text value) { list.push_back(value); };
    };
    PreprocessorOptions& preprocessor = options.preprocessor;
    return {
        {"-o", ToolOption::Separate, "the file to write", name(options.output)},
        {"-E", ToolOption::Flag, "preprocess only", flag(options.preprocessOnly)},
        {"-D", ToolOption::Attached, "define a macro, NAME or NAME=TEXT",
         collect(preprocessor.definitions)},
        {"-U", ToolOption::Attached, "undefine a macro", collect(preprocessor.undefinitions)},
        {"-I", ToolOption::Attached, "look here for included files",
         collect(preprocessor.userIncludes)},
        {"-J", ToolOption::Attached, "look here for the system's included files",
         collect(preprocessor.systemIncludes)},
        {"-g", ToolOption::Flag, "make debugging information", flag(options.debugInformation)},
        {"-w", ToolOption::Flag, "no warnings", flag(preprocessor.suppressWarnings)},
        {"-we", ToolOption::Flag, "warnings are errors", flag(preprocessor.warningsAreErrors)},
        {"-ansi", ToolOption::Flag, "keep to the C standard", flag(options.enforceAnsi)},
        {"-O", ToolOption::Attached, "optimise: -N for size, +N for speed, N from 0 to 9",
         [&](Text value) { options.optimization = optimizationLevel(value); }},
        {"-Or-", ToolOption::Flag, "keep every variable in memory",
         flag(options.keepLocalsInMemory)},
        {"-Orl", ToolOption::Flag, "variables of functions may be in registers", ignore},
        {"-Org", ToolOption::Flag, "as -Orl", ignore},
        {"-Rc,", ToolOption::Attached, "the section of code", name(options.sections.code)},
        {"-Rd,", ToolOption::Attached, "the section of initialised data",
         name(options.sections.data)},
        {"-Rz,", ToolOption::Attached, "the section of zeroed data", name(options.sections.zeroed)},
        {"-Rk,", ToolOption::Attached, "the section of constants", name(options.sections.constant)},
        {"-Rv,", ToolOption::Attached, "the section of interrupt vectors",
         name(options.sections.vectors)},
        {"-msd", ToolOption::Flag, "accepted; double has 8 bytes", ignore},
        {"-mmpy", ToolOption::Flag, "accepted; the linked library multiplies", ignore},
        {"-mmpyinl", ToolOption::Flag, "as -mmpy", ignore},
        {"-mcpux", ToolOption::Flag, "accepted; C code uses the base instructions", ignore},
        {"-V", ToolOption::Flag, "show the commands", flag(options.verbose)},
    };
}
