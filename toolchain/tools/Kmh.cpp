#include "toolchain/tools/Kmh.h"

#include "base/HException.h"
#include "toolchain/common/OutputFile.h"
#include "toolchain/common/ToolMain.h"
#include "toolchain/tools/MemoryMapHeader.h"

namespace {

constexpr ToolDescription Description = {
    "kmh", "MAP -o HEADER",
    "Makes a C header of a memory map file (.xml): NAME_START and NAME_SIZE for each segment, an\n"
    "lvalue for each register, REGISTER_FIELD with the mask of each bit field, and\n"
    "REGISTER_FIELD_VALUE for each of its named values, shifted to its place."};

} // namespace

void kmh(std::span<const std::string> words, Diagnostics& diagnostics)
{
    std::string output;
    const ToolOption options[] = {
        {"-o", ToolOption::Separate, "the header",
         [&](const std::string& value) { output = value; }},
    };
    if (answerToolHelp(Description, options, words))
        return;
    const std::vector<std::string> inputs = parseToolOptions(words, options);
    if (inputs.size() != 1)
        throw HException("one memory map has to be named");
    if (output.empty())
        throw HException("no output file; name it with -o");
    MemoryMapHeader header(diagnostics);
    header.read(inputs[0]);
    if (diagnostics.failed())
        return;
    OutputFile out(output);
    out.write(header.text(inputs[0], output));
    out.commit();
}
