#include "toolchain/kcc/Kcc.h"

#include "base/HException.h"
#include "objfile/format/HFileInputByteStream.h"
#include "toolchain/common/Dependencies.h"
#include "toolchain/common/ObjectOutput.h"
#include "toolchain/common/OutputFile.h"
#include "toolchain/common/TemporaryFile.h"
#include "toolchain/common/ToolMain.h"
#include "toolchain/kcc/CompilerOptions.h"
#include "toolchain/kcc/VectorPragma.h"

#include <cstdio>

namespace {

constexpr ToolDescription Description = {
    "kcc", "[OPTION]... FILE -o OUTPUT",
    "Compiles a C source file to a native object file, or preprocesses it with -E. An object\n"
    "file of the compiler behind it (.o) is converted."};

using Words = std::vector<std::string>;

void append(Words& words, std::initializer_list<const char*> more)
{
    words.insert(words.end(), more.begin(), more.end());
}

Words compileCommand(const CompilerOptions& options)
{
    Words words = clangCommand(options.preprocessor);
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
    runClang(words, diagnostics);
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
    writeObjectFile(module, options.output);
}

void preprocess(const std::string& source, const CompilerOptions& options, Diagnostics& diagnostics)
{
    OutputFile out(options.output);
    Words words = clangCommand(options.preprocessor);
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
    words.insert(words.end(), {"-MD", "-MF", dependencies.path(), source, "-o", object.path()});
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
