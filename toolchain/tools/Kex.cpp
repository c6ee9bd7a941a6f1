#include "toolchain/tools/Kex.h"

#include "base/HException.h"
#include "objfile/loadfiles/CodeBuffer.h"
#include "objfile/loadfiles/LoadFileWriter.h"
#include "objfile/loadfiles/TOBFLoadFile.h"
#include "toolchain/common/OutputFile.h"
#include "toolchain/common/ToolMain.h"

namespace {

constexpr ToolDescription Description = {"kex", "IN -o STEM -FFORMAT",
                                         "Writes an executable as STEM.FORMAT. FORMAT is hex "
                                         "(Intel Hex), lst (plain hex listing), srec\n"
                                         "(Motorola S-records), bin (bytes from the lowest address "
                                         "on), tek (extended Tektronix Hex) or\n"
                                         "txt (TI-TXT)."};

std::string withoutEnding(const std::string& path)
{
    const std::size_t dot = path.rfind('.');
    const std::size_t slash = path.rfind('/');
    const bool ends = dot != std::string::npos && (slash == std::string::npos || dot > slash);
    return ends ? path.substr(0, dot) : path;
}

void convert(const std::string& in, const std::string& stem, const std::string& format,
             Diagnostics& diagnostics)
{
    TOBFLoadFile executable(in.c_str());
    const LoadFileSections& sections = executable.loadFileSections();
    if (sections.sections().empty())
        diagnostics.warning("there is nothing to write in " + in);
    if (!sections.eeSections().empty())
        diagnostics.warning("EEPROM sections aren't written");
    OutputFile out(stem + "." + format);
    const std::unique_ptr<CodeBuffer> buffer = CodeBuffer::make(format, out.path());
    if (!buffer)
        throw HException("unknown format " + format);
    writeLoadFile(executable, *buffer);
    out.commit();
}

} // namespace

void kex(std::span<const std::string> words, Diagnostics& diagnostics)
{
    std::string stem, format;
    const ToolOption options[] = {
        {"-o", ToolOption::Separate, "the output's name without its ending",
         [&](const std::string& value) { stem = value; }},
        {"-F", ToolOption::Attached, "the output's format",
         [&](const std::string& value) { format = value; }},
        {"-V", ToolOption::Flag, nullptr, [](const std::string&) {}},
    };
    if (answerToolHelp(Description, options, words))
        return;
    const std::vector<std::string> inputs = parseToolOptions(words, options);
    if (inputs.size() != 1)
        throw HException("one executable has to be named");
    if (format.empty())
        throw HException("no output format");
    convert(inputs[0], stem.empty() ? withoutEnding(inputs[0]) : stem, format, diagnostics);
}
