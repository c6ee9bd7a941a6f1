// Reading and writing of load files, and address ranges in great number.

#include "objfile/loadfiles/AddressRanges.h"
#include "objfile/loadfiles/CodeBuffer.h"
#include "objfile/loadfiles/LoadFileFactory.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <unistd.h>

namespace {

constexpr unsigned ImageSize = 0x100000;

struct Format {
    const char* writer;
    const char* reader;
};
constexpr Format Formats[] = {{"hex", "ihex"}, {"srec", "srec"}, {"txt", "tihex"}, {"lst", "hex"}};

std::string imagePath(const Format& format)
{
    return "/tmp/bench_loadfile." + std::to_string(getpid()) + "." + format.writer;
}

void writeImage(const Format& format)
{
    const auto buffer = CodeBuffer::make(format.writer, imagePath(format));
    buffer->setAddress(0);
    for (unsigned i = 0; i < ImageSize; ++i)
        buffer->addByte(i * 7);
    buffer->endRecord(0);
}

void writeMegabyte(benchmark::State& state)
{
    const Format& format = Formats[state.range(0)];
    for (auto _ : state)
        writeImage(format);
    unlink(imagePath(format).c_str());
    state.SetLabel(format.writer);
    state.SetBytesProcessed(state.iterations() * ImageSize);
}
BENCHMARK(writeMegabyte)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);

void readMegabyte(benchmark::State& state)
{
    const Format& format = Formats[state.range(0)];
    writeImage(format);
    for (auto _ : state) {
        const std::unique_ptr<LoadFileInterface> file(
            LoadFileFactory::instance()->create(imagePath(format).c_str(), format.reader));
        benchmark::DoNotOptimize(file->loadFileSections().length());
    }
    unlink(imagePath(format).c_str());
    state.SetLabel(format.reader);
    state.SetBytesProcessed(state.iterations() * ImageSize);
}
BENCHMARK(readMegabyte)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);

/// Separate ranges that each addition looks for neighbours of.
void addRanges(benchmark::State& state)
{
    const auto count = static_cast<std::uint32_t>(state.range(0));
    for (auto _ : state) {
        AddressRanges ranges;
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::uint32_t at = i * 2654435761u & 0xFFFFFFF0u; // in a scattered order
            ranges.add(at, at + 7, true);
        }
        benchmark::DoNotOptimize(ranges.count());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(addRanges)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
