// Contexts of the script engine: making and freeing them, and the memory that objects take.

#include "script/es/ESContext.h"

#include <benchmark/benchmark.h>

#include <fstream>

#include <malloc.h>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Resident memory of this process in KiB.
double residentKiB()
{
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word)
        if (word == "VmRSS:") {
            double value = 0;
            status >> value;
            return value;
        }
    return 0;
}

/// A process that makes and frees 10,000 contexts, each of which compiles and runs a program.
void contexts(benchmark::State& state)
{
    const QString program = u"function f(n) { return n + 1; }\n"
                            "var o = { a: f(1), b: 'text' };\n"
                            "for (var i = 0; i < 100; i++) o['k' + i] = f(i);"_s;
    const double before = residentKiB();
    for (auto _ : state) {
        for (int i = 0; i < 10'000; ++i) {
            ESContext context;
            benchmark::DoNotOptimize(context.eval(program));
        }
    }
    state.counters["growth_KiB"] = residentKiB() - before;
}
BENCHMARK(contexts)->Unit(benchmark::kMillisecond)->Iterations(1);

/// One context that makes 1,000,000 objects with two properties.
void objects(benchmark::State& state)
{
    const QString program =
        u"var all = []; for (var i = 0; i < 1000000; i++) all[i] = {x: i, y: 1};"_s;
    double taken = 0;
    double left = 0;
    for (auto _ : state) {
        malloc_trim(0);
        const double before = residentKiB();
        {
            ESContext context;
            benchmark::DoNotOptimize(context.eval(program));
            taken = residentKiB() - before;
        }
        malloc_trim(0);
        left = residentKiB() - before;
    }
    state.counters["taken_KiB"] = taken;
    state.counters["left_KiB"] = left;
}
BENCHMARK(objects)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

BENCHMARK_MAIN();
