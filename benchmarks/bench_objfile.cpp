// Reading and writing a large executable with debug information, in bytes of the file per second.
// The peer is a plain copy of the file's bytes, which is what no reader can beat.

#include "objfile/format/TOBFWriter.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/model/TOBFType.h"
#include "objfile/msp430/TOBFMSP430Insn.h"
#include "objfile/msp430/TOBFMSP430Reader.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

using Bytes = std::vector<unsigned char>;
constexpr int Functions = 2000;
constexpr int StatementsOfFunction = 60;

HString* name(const std::string& text) { return HString::intern(text); }

/// A function as the linker leaves it: placed and encoded, a position every third instruction, a
/// scope with variables.
void addFunction(TOBFModule* module, TOBFSection* section, TOBFFilename* file, TOBFType* type,
                 int number)
{
    section->newFragment();
    long pc = 0x10000 + long{number} * StatementsOfFunction * 12;
    const auto add = [&](TOBFInsn* insn) {
        insn->setPC(pc);
        section->addInsn(insn);
        pc += insn->length();
    };
    auto* start = new TOBFMarker;
    auto* end = new TOBFMarker;
    auto* symbol = new TOBFSymbol(name("function" + std::to_string(number)));
    symbol->setDefinition(new TOBFMarkerExpr(start));
    symbol->setLocus(new TOBFLocus(file, number, TAG_SYMBOL_LOCUS));
    symbol->setType(new TOBFFunctionType(0, -4, 0x600));
    module->addSymbol(symbol);
    module->makePublic(symbol);
    symbol->setScope(module);
    add(start);
    for (int i = 0; i < StatementsOfFunction; ++i) {
        add(new TOBFLocus(file, number * 100 + i, TAG_LOCUS));
        add(new TOBFMSP430Insn(0x4035, new TOBFConstExpr(i * 17), nullptr, false));
        add(new TOBFMSP430Insn(0x5506, nullptr, nullptr, false));
        add(new TOBFMSP430Insn(0x12B0, new TOBFSymbolExpr(symbol), nullptr, false));
    }
    add(end);
    for (TOBFInsn* insn : section->currentFragment()->insns())
        if (insn->kind() == TOBFKind::ProcessorInsn) {
            insn->setStackAdjustment(-6);
            insn->encode();
        }
    auto* scope = new TOBFScope(TAG_SCOPE_FUNCTION);
    scope->setScope(module);
    scope->setRange(new TOBFMarkerExpr(start), new TOBFMarkerExpr(end));
    scope->setFunctionSymbol(symbol);
    for (const char* const local : {"index", "count", "result"}) {
        auto* variable = new TOBFSymbol(name(local));
        variable->setType(type);
        variable->setDefinition(
            TOBFBinaryExpr::make(TAG_BASE_OFFSET, new TOBFRegisterExpr(1), new TOBFConstExpr(-4)));
        variable->setScope(scope);
    }
}

TOBFModule* makeModule()
{
    auto* module = new TOBFModule;
    auto* section = new TOBFSection(name("CODE"));
    section->setFlags(0x80001);
    module->addSection(section);
    auto* file = new TOBFFilename(name("/home/user/project/source.c"));
    TOBFType* type = new TOBFSimpleType(TAG_INT, 2);
    for (int i = 0; i < Functions; ++i)
        addFunction(module, section, file, type, i);
    module->nameMarkers();
    return module;
}

Bytes write(TOBFModule* module)
{
    TOBFWriter writer;
    module->externalize(&writer, false);
    writer.finish();
    return writer.data();
}

const Bytes& executable()
{
    static const Bytes bytes = [] {
        Pool pool;
        const CurrentPool current(&pool);
        return write(makeModule());
    }();
    return bytes;
}

TOBFModule* read(const Bytes& bytes)
{
    const HByteStream stream(bytes.data(), bytes.size());
    TOBFMSP430Reader reader(&stream, true);
    return reader.readFile();
}

void report(benchmark::State& state)
{
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * executable().size()));
    state.SetLabel(std::to_string(executable().size() / 1000) + " KB");
}

void readExecutable(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state)
        TOBFReader::release(read(executable()));
    report(state);
}

void writeExecutable(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming(); // a module can be written once
        TOBFModule* module = read(executable());
        state.ResumeTiming();
        benchmark::DoNotOptimize(write(module).size());
        state.PauseTiming();
        TOBFReader::release(module);
        state.ResumeTiming();
    }
    report(state);
}

void copyBytes(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        const Bytes copy = executable();
        benchmark::DoNotOptimize(copy.data());
    }
    report(state);
}

BENCHMARK(readExecutable)->Unit(benchmark::kMillisecond);
BENCHMARK(writeExecutable)->Unit(benchmark::kMillisecond);
BENCHMARK(copyBytes)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
