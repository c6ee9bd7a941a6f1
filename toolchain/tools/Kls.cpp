#include "toolchain/tools/Kls.h"

#include "base/HException.h"
#include "objfile/listing/DumpSections.h"
#include "objfile/listing/SourceLine.h"
#include "objfile/msp430/TOBFMSP430Reader.h"
#include "toolchain/common/OutputFile.h"
#include "toolchain/common/ToolMain.h"

#include <memory>

namespace {

constexpr ToolDescription Description = {"kls", "FILE -o OUTPUT",
                                         "Writes the listing of an executable or object file."};

class ListingText final : public DumpSections {
public:
    const std::string& text() const { return m_text; }

protected:
    void outputLine(const std::string& line, TOBFInsn*) override { m_text += line + "\n"; }

private:
    std::string m_text;
};

struct Release {
    void operator()(TOBFModule* module) const { TOBFReader::release(module); }
};

} // namespace

void kls(std::span<const std::string> words, Diagnostics&)
{
    std::string output;
    const ToolOption options[] = {
        {"-o", ToolOption::Separate, "the file to write",
         [&](const std::string& value) { output = value; }},
        {"-V", ToolOption::Flag, nullptr, [](const std::string&) {}},
    };
    if (answerToolHelp(Description, options, words))
        return;
    const std::vector<std::string> files = parseToolOptions(words, options);
    if (files.size() != 1)
        throw HException("one executable has to be named");
    if (output.empty())
        throw HException("no output file; name it with -o");
    const HFileInputByteStream stream(files[0]);
    TOBFMSP430Reader reader(&stream, true);
    const std::unique_ptr<TOBFModule, Release> module(reader.readFile());
    if (module == nullptr)
        throw HException(files[0] + " holds no module");
    ListingText listing;
    SourceLine source;
    listing.doit(module.get(), &source, true, true);
    OutputFile out(output);
    out.write(listing.text());
    out.commit();
}
