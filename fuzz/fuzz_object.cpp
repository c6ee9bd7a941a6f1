// The object reader, and all that is done with a module that came from outside: evaluating,
// measuring, indexing, listing, marking and writing it.

#include "base/HException.h"
#include "objfile/format/TOBFWriter.h"
#include "objfile/listing/DumpSections.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFInsn.h"
#include "objfile/model/TOBFType.h"
#include "objfile/msp430/TOBFMSP430Reader.h"
#include "objfile/query/SymbolicDebug.h"

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

void ask(const SymbolicDebug& debug, unsigned address)
{
    const SourceAddressMapping& mapping = debug.sourceAddressMapping();
    QString file;
    unsigned line = 0;
    unsigned start = 0;
    unsigned length = 0;
    debug.GetInsn(address);
    debug.getSection(address);
    debug.findFunctionSymbol(static_cast<int>(address), false);
    debug.findDataSymbol(static_cast<int>(address), true);
    debug.findClosestSymbol(static_cast<int>(address));
    debug.findScopedSymbol(QStringLiteral("x"), static_cast<int>(address));
    mapping.AddressToRange(address, start, length);
    if (mapping.AddressToSource(address, file, line))
        mapping.SourceToAddress(file, line, start, length);
}

void useIndex(TOBFModule* module)
{
    const SymbolicDebug debug(module, Path());
    for (const unsigned address : {0U, 1U, 0x1000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
        ask(debug, address);
    for (const SymbolicDebug::Position& locus : debug.loci())
        ask(debug, static_cast<unsigned>((*locus)->pc()));
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
    useIndex(module.get());
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
