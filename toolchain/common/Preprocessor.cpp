#include "toolchain/common/Preprocessor.h"

#include "toolchain/common/TemporaryFile.h"

#include <fstream>
#include <iterator>

std::string preprocessAssembly(const std::string& path, const PreprocessorOptions& options,
                               Diagnostics& diagnostics)
{
    const TemporaryFile output(".s");
    std::vector<std::string> words = clangCommand(options);
    words.insert(words.end(), {"-E", "-x", "assembler-with-cpp", "-o", output.path(), "--", path});
    runClang(words, diagnostics);
    std::ifstream in(output.path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}
