// The object reader, and all that is done with a module that came from outside: evaluating,
// measuring, listing, marking and writing it.

#include "base/HException.h"
#include "objfile/format/TOBFWriter.h"
#include "objfile/listing/DumpSections.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFInsn.h"
#include "objfile/model/TOBFType.h"
#include "objfile/msp430/TOBFMSP430Reader.h"

#include <cstdlib>
#include <memory>
#include <vector>

namespace {

struct Release {
    void operator()(TOBFModule* module) const { TOBFReader::release(module); }
};
using OwnedModule = std::unique_ptr<TOBFModule, Release>;

class NoOutput final : public DumpSections {
protected:
    void outputLine(const std::string&, TOBFInsn*) override { }
};

OwnedModule read(const std::uint8_t* data, std::size_t size, bool keepLocus, bool quickly)
{
    const HByteStream stream(data, size);
    TOBFMSP430Reader reader(&stream, keepLocus);
    return OwnedModule(quickly ? reader.readFileQuickly() : reader.readFile());
}

void use(TOBFModule* module)
{
    for (TOBFSymbol* symbol : module->allSymbols()) {
        if (symbol->definition() != nullptr)
            symbol->definition()->evaluate();
        if (symbol->type() != nullptr)
            symbol->type()->getName();
    }
    for (TOBFSection* section : module->sections()) {
        section->getSize();
        section->accumulatedSize();
        section->findInsnInRange(0x4000);
    }
    NoOutput().doit(module, nullptr, false, true);
    for (const auto& [name, symbol] : module->publicSymbols())
        symbol->markReachable(true);
}

std::vector<unsigned char> write(TOBFModule* module)
{
    TOBFWriter writer;
    module->externalize(&writer, false);
    writer.finish();
    return writer.data();
}

void readAndUse(const std::uint8_t* data, std::size_t size)
{
    const OwnedModule module = read(data, size, true, false);
    if (module == nullptr)
        return;
    use(module.get());
    write(module.get());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    for (int way = 0; way < 3; ++way) {
        try {
            if (way == 0)
                readAndUse(data, size);
            else
                read(data, size, false, way == 2);
        } catch (const HException&) {
            // A message is what a bad file is to end in.
        }
    }
    return 0;
}
