// Lines of assembly per second, from the text to the written object.

#include "objfile/format/TOBFWriter.h"
#include "toolchain/kas/Assembler.h"

#include <benchmark/benchmark.h>

namespace {

std::string source(int functions)
{
    std::string text;
    for (int i = 0; i < functions; ++i) {
        const std::string number = std::to_string(i);
        text += ".global f" + number + "\nf" + number
            + ": mov #0x1234, r5 ; a comment\n add 4(r6), r7\n1: cmp #" + number
            + ", r5\n jne 1b\n call #f" + std::to_string((i + 1) % functions) + "\n ret\n";
    }
    return text;
}

void assembleText(benchmark::State& state)
{
    const std::string text = source(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        Pool pool;
        const CurrentPool current(&pool);
        Diagnostics diagnostics("kas");
        Assembler assembler({}, diagnostics);
        TOBFModule* module = assembler.assemble(splitAssembly(text, "a.s"), "a.s");
        TOBFWriter writer;
        module->externalize(&writer, false);
        writer.finish();
        benchmark::DoNotOptimize(writer.data().data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0) * 7);
}
BENCHMARK(assembleText)->Arg(100)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
