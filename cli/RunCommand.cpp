#include "cli/RunCommand.h"

#include "cli/SimulatedProgram.h"

#include <chrono>
#include <cstdio>

namespace {

void printRegisters(MSP430Monitor& monitor)
{
    TargetRegisterInterface& registers = *monitor.registers();
    for (unsigned i = 0; i < registers.numRegisters(); ++i)
        std::printf("%s %05x\n", qPrintable(registers.numberToName(i)),
                    registers.getValue(i) & 0xFFFFF);
}

void printTrace(MSP430Monitor& monitor)
{
    unsigned address, data, cycles;
    monitor.iterateTrace();
    while (monitor.getNextTrace(address, data, cycles))
        std::printf("%05x %u\n", address, cycles);
}

void printCounts(MSP430Monitor& monitor)
{
    unsigned address, count, extra;
    monitor.iterateExecutionCount();
    while (monitor.getNextExecutionCount(address, count, extra))
        std::printf("%05x %u\n", address, count);
}

void printStats(const MSP430Monitor& monitor, double seconds)
{
    const auto instructions = monitor.runCounter();
    std::fprintf(stderr, "%llu instructions, %llu cycles, %.3f seconds, %.1f MIPS\n",
                 static_cast<unsigned long long>(instructions),
                 static_cast<unsigned long long>(monitor.cycleCount()), seconds,
                 seconds > 0 ? static_cast<double>(instructions) / seconds / 1e6 : 0.0);
}

} // namespace

int runCommand(std::span<const std::string> arguments)
{
    const RunOptions options = parseRunOptions(arguments);
    SimulatedProgram program(options);
    const auto began = std::chrono::steady_clock::now();
    const int status = program.run();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
    if (options.trace)
        printTrace(program.monitor());
    if (options.counts)
        printCounts(program.monitor());
    if (options.registers)
        printRegisters(program.monitor());
    std::fflush(stdout);
    if (options.stats)
        printStats(program.monitor(), took.count());
    return status;
}
