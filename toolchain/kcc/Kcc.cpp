#include "toolchain/kcc/Kcc.h"

#include "base/HException.h"
#include "base/ProgramLocation.h"
#include "objfile/format/HFileInputByteStream.h"
#include "objfile/format/TOBFWriter.h"
#include "toolchain/common/Dependencies.h"
#include "toolchain/common/OutputFile.h"
#include "toolchain/common/Process.h"
#include "toolchain/common/TemporaryFile.h"
#include "toolchain/common/ToolMain.h"
#include "toolchain/kcc/CompilerOptions.h"
#include "toolchain/kcc/VectorPragma.h"

#include <cstdio>

namespace {

constexpr ToolDescription Description
    = {"kcc", "[OPTION]... FILE -o OUTPUT",
       "Compiles a C source file to a native object file, or preprocesses it with -E. An object\n"
       "file of the compiler behind it (.o) is converted."};

using Words = std::vector<std::string>;

void append(Words& words, std::initializer_list<const char*> more)
{
    words.insert(words.end(), more.begin(), more.end());
}

Words commonCommand(const CompilerOptions& options)
{
    Words words = {"clang"};
    append(words, {"--target=msp430", "-mhwmult=none", "-nostdlibinc", "-fno-color-diagnostics",
                   "-fdiagnostics-format=msvc", "-fno-show-column", "-fno-caret-diagnostics"});
    words.insert(words.end(), options.preprocessor.begin(), options.preprocessor.end());
    for (const std::string& folder : options.systemIncludes)
        words.push_back("-isystem" + folder);
    if (options.systemIncludes.empty())
        words.push_back("-isystem" + (installationRoot() / "include").string());
    if (options.suppressWarnings)
        words.emplace_back("-w");
    if (options.warningsAreErrors)
        words.emplace_back("-Werror");
    return words;
}

Words compileCommand(const CompilerOptions& options)
{
    Words words = commonCommand(options);
    append(words, {"-c", "-ffunction-sections", "-fdata-sections", "-fno-addrsig", "-fno-common"});
    words.emplace_back(options.keepLocalsInMemory ? "-O0" : options.optimization);
    if (options.enforceAnsi)
        append(words, {"-std=c17", "-Wpedantic"});
    if (options.debugInformation)
        append(words, {"-gdwarf-5", "-glldb", "-gno-column-info"});
    return words;
}

void run(const Words& words, const CompilerOptions& options, Diagnostics& diagnostics)
{
    if (options.verbose) {
        for (const std::string& word : words)
            std::printf("%s ", word.c_str());
        std::printf("\n");
        std::fflush(stdout);
    }
    const int status = runProcess(words);
    if (status < 0)
        diagnostics.fatal("the compiler clang is not installed; install the package clang");
    if (status > 1)
        diagnostics.fatal("the compiler ended with status " + std::to_string(status));
    if (status == 1) // it has said why
        throw FatalDiagnostic("compilation failed");
}

void writeObject(const std::string& object, const CompilerOptions& options,
                 const std::string& dependencies)
{
    const HFileInputByteStream stream(object);
    const ElfObject elf({stream.data(), stream.size()});
    Pool pool;
    const CurrentPool current(&pool);
    auto* module = new TOBFModule;
    if (!dependencies.empty())
        module->setAttribute(HString::intern("dependencies"), HString::intern(dependencies));
    ObjectConverter(elf, options.sections, module).convert(options.debugInformation);
    TOBFWriter writer;
    module->externalize(&writer, false);
    writer.finish();
    OutputFile out(options.output);
    out.write({reinterpret_cast<const char*>(writer.data().data()), writer.data().size()});
    out.commit();
}

void preprocess(const std::string& source, const CompilerOptions& options, Diagnostics& diagnostics)
{
    OutputFile out(options.output);
    Words words = commonCommand(options);
    words.insert(words.end(), {"-E", source, "-o", out.path()});
    run(words, options, diagnostics);
    out.commit();
}

void compile(const std::string& source, const CompilerOptions& options, Diagnostics& diagnostics)
{
    const VectorPragma pragma(source);
    const TemporaryFile object(".o");
    const TemporaryFile dependencies(".d");
    Words words = compileCommand(options);
    if (!pragma.compilerOption().empty())
        words.push_back(pragma.compilerOption());
    words.insert(words.end(),
                 {"-MD", "-MF", dependencies.path(), source, "-o", object.path()});
    run(words, options, diagnostics);
    writeObject(object.path(), options, readDependencies(dependencies.path()));
}

} // namespace

void kcc(std::span<const std::string> words, Diagnostics& diagnostics)
{
    CompilerOptions options;
    const std::vector<ToolOption> table = compilerOptionTable(options);
    if (answerToolHelp(Description, table, words))
        return;
    const std::vector<std::string> inputs = parseToolOptions(words, table);
    if (inputs.size() != 1)
        throw HException("one source file has to be named");
    if (options.output.empty())
        throw HException("no output file; name it with -o");
    if (options.preprocessOnly)
        preprocess(inputs[0], options, diagnostics);
    else if (inputs[0].ends_with(".o"))
        writeObject(inputs[0], options, inputs[0]);
    else
        compile(inputs[0], options, diagnostics);
}
