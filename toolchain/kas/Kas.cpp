#include "toolchain/kas/Kas.h"

#include "base/HException.h"
#include "objfile/msp430/TOBFMSP430Insn.h"
#include "toolchain/common/ObjectOutput.h"
#include "toolchain/common/Preprocessor.h"
#include "toolchain/common/ToolMain.h"
#include "toolchain/kas/AsmFiles.h"
#include "toolchain/kas/Assembler.h"

#include <cstdio>
#include <sstream>
#include <unordered_set>

namespace {

constexpr ToolDescription Description = {
    "kas", "[options] FILE -o OBJECT",
    "Assembles MSP430 and MSP430X source into a native object file. A source with directives of "
    "the\n"
    "C preprocessor, or with names that -D defines, is preprocessed first."};

struct Request {
    PreprocessorOptions preprocessor;
    AssemblerOptions assembler;
    std::string output;
    bool verbose = false;
};

std::vector<ToolOption> optionsFor(Request& request, Diagnostics& diagnostics)
{
    const auto appendTo = [](std::vector<std::string>& list) {
        return [&list](const std::string& value) { list.push_back(value); };
    };
    const auto store = [](std::string& place) {
        return [&place](const std::string& value) { place = value; };
    };
    const auto set = [](bool& place) { return [&place](const std::string&) { place = true; }; };
    SectionNames& names = request.assembler.sections;
    using Option = ToolOption;
    return {
        {"-o", Option::Separate, "the object file", store(request.output)},
        {"-D", Option::Attached, "define NAME or NAME=VALUE for the preprocessor",
         appendTo(request.preprocessor.definitions)},
        {"-U", Option::Attached, "undefine NAME", appendTo(request.preprocessor.undefinitions)},
        {"-I", Option::Attached, "search a folder for included files",
         appendTo(request.preprocessor.userIncludes)},
        {"-J", Option::Attached, "search a folder for system files",
         appendTo(request.preprocessor.systemIncludes)},
        {"-mcpux", Option::Flag, "know the MSP430X instructions", set(request.assembler.msp430x)},
        {"-g", Option::Flag, "record source lines for the debugger",
         set(request.assembler.debugInformation)},
        {"-w", Option::Flag, "print no warnings",
         [&](const std::string&) {
             diagnostics.suppressWarnings(true);
             request.preprocessor.suppressWarnings = true;
         }},
        {"-we", Option::Flag, "treat warnings as errors",
         [&](const std::string&) {
             diagnostics.treatWarningsAsErrors(true);
             request.preprocessor.warningsAreErrors = true;
         }},
        {"-V", Option::Flag, "say what is done", set(request.verbose)},
        {"-Rc,", Option::Attached, "the code section's name, instead of CODE", store(names.code)},
        {"-Rd,", Option::Attached, "the initialised data's, instead of IDATA0", store(names.data)},
        {"-Rz,", Option::Attached, "the zeroed data's, instead of UDATA0", store(names.zeroed)},
        {"-Rk,", Option::Attached, "the constants', instead of CONST", store(names.constant)},
        {"-Rv,", Option::Attached, "the vectors', instead of INTVEC", store(names.vectors)},
    };
}

bool isDirective(std::string_view line)
{
    static const std::unordered_set<std::string_view> Directives = {
        "include", "define", "undef", "if",    "ifdef",  "ifndef",
        "elif",    "else",   "endif", "error", "pragma", "warning"};
    const std::size_t mark = line.find_first_not_of(" \t");
    if (mark == std::string_view::npos || line[mark] != '#')
        return false;
    const std::size_t begin = line.find_first_not_of(" \t", mark + 1);
    if (begin == std::string_view::npos)
        return false;
    const std::size_t end = line.find_first_not_of("abcdefghijklmnopqrstuvwxyz", begin);
    return Directives.contains(
        line.substr(begin, end == std::string_view::npos ? end : end - begin));
}

std::string joined(const std::vector<std::string>& parts)
{
    std::string text;
    for (const std::string& part : parts)
        text += (text.empty() ? "" : ";") + part;
    return text;
}

AsmLinesPtr readStatements(const std::string& path, const Request& request, Assembler& assembler,
                           Diagnostics& diagnostics)
{
    std::string text = readSource(path);
    if (!needsPreprocessor(text, request.preprocessor.definitions))
        return splitAssembly(text, path);
    text = preprocessAssembly(path, request.preprocessor, diagnostics);
    std::vector<std::string> files;
    AsmLinesPtr lines = splitAssembly(text, path, &files);
    for (const std::string& file : files)
        assembler.addDependency(file);
    return lines;
}

void assembleFile(const std::string& path, Request& request, Diagnostics& diagnostics)
{
    Pool pool;
    const CurrentPool current(&pool);
    g_msp430x = request.assembler.msp430x;
    request.assembler.includePaths = request.preprocessor.userIncludes;
    request.assembler.includePaths.insert(request.assembler.includePaths.end(),
                                          request.preprocessor.systemIncludes.begin(),
                                          request.preprocessor.systemIncludes.end());
    Assembler assembler(request.assembler, diagnostics);
    assembler.addDependency(path);
    TOBFModule* module =
        assembler.assemble(readStatements(path, request, assembler, diagnostics), path);
    if (diagnostics.failed())
        return;
    module->setAttribute(HString::intern("dependencies"),
                         HString::intern(joined(assembler.dependencies())));
    writeObjectFile(module, request.output);
}

std::string objectName(const std::string& source)
{
    const std::size_t dot = source.rfind('.');
    const std::size_t slash = source.rfind('/');
    const bool ends = dot != std::string::npos && (slash == std::string::npos || dot > slash);
    return (ends ? source.substr(0, dot) : source) + ".kvo";
}

} // namespace

bool needsPreprocessor(const std::string& text, const std::vector<std::string>& definitions)
{
    for (const std::string& definition : definitions)
        if (text.find(definition.substr(0, definition.find('='))) != std::string::npos)
            return true;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (isDirective(line))
            return true;
    return false;
}

void kas(std::span<const std::string> words, Diagnostics& diagnostics)
{
    Request request;
    const std::vector<ToolOption> options = optionsFor(request, diagnostics);
    if (answerToolHelp(Description, options, words))
        return;
    const std::vector<std::string> inputs = parseToolOptions(words, options);
    if (inputs.size() != 1)
        throw HException("one source file has to be named");
    if (request.output.empty())
        request.output = objectName(inputs[0]);
    if (request.verbose)
        std::printf("kas: assembling %s\n", inputs[0].c_str());
    try {
        assembleFile(inputs[0], request, diagnostics);
    } catch (const AsmError& error) {
        throw HException(error.text);
    }
}
