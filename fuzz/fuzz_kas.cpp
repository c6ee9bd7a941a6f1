// The assembler on arbitrary sources, and what it makes written out and read back.

#include "base/HException.h"
#include "objfile/format/TOBFWriter.h"
#include "objfile/msp430/TOBFMSP430Insn.h"
#include "objfile/msp430/TOBFMSP430Reader.h"
#include "toolchain/kas/Assembler.h"

#include <cstdlib>

namespace {

void readBack(const std::vector<unsigned char>& object)
{
    const HByteStream stream(object.data(), object.size());
    TOBFMSP430Reader reader(&stream, true);
    if (TOBFModule* module = reader.readFile())
        TOBFReader::release(module);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Pool pool;
    const CurrentPool current(&pool);
    Diagnostics diagnostics("kas", [](const std::string&) {});
    AssemblerOptions options;
    options.msp430x = g_msp430x = true;
    options.debugInformation = true;
    TOBFModule* module = nullptr;
    try {
        Assembler assembler(options, diagnostics);
        module = assembler.assemble(
            splitAssembly({reinterpret_cast<const char*>(data), size}, "/a.s"), "/a.s");
    } catch (const FatalDiagnostic&) {
        return 0;
    }
    if (diagnostics.failed())
        return 0;
    TOBFWriter writer;
    module->externalize(&writer, false);
    writer.finish();
    try {
        readBack(writer.data());
    } catch (const HException&) {
        std::abort(); // what was written has to be readable
    }
    return 0;
}
