// Runs one image in the simulator, free and watched in several ways, and in `mspdebug sim`, and
// prints their speeds and ratios. usage: bench_simulator [OUTER_LOOPS]
#include "projects/macros/MacroSystem.h"
#include "target/msp430/MSP430Monitor.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <sys/resource.h>

namespace {

constexpr unsigned start = 0x8000;
constexpr unsigned short resetTo = start;
constexpr unsigned innerLoops = 1000;
constexpr unsigned innerLength = 11;

/// Two nested loops over an arithmetic body with register, memory and constant operands.
std::vector<unsigned short> program(unsigned outerLoops)
{
    return {
        0x4031, 0x0400,                                  // mov #0x400, sp
        0x403A, static_cast<unsigned short>(outerLoops), // mov #outerLoops, r10
        0x4034, 0x0300,                                  // mov #0x300, r4
        0x4305,                                          // clr r5
        0x4316,                                          // mov #1, r6
        0x5605,                                          // inner: add r6, r5
        0xE506,                                          // xor r5, r6
        0x4684, 0x0000,                                  // mov r6, 0(r4)
        0x50B4, 0x0003,
        0x0000,             // add #3, 0(r4)
        0x4127,             // mov @sp, r7
        0x6708,             // addc r7, r8
        0x1108,             // rra r8
        0x1089,             // swpb r9
        0x531B,             // inc r11
        0x903B, innerLoops, // cmp #innerLoops, r11
        0x23F1,             // jne inner
        0x430B,             // clr r11
        0x831A,             // dec r10
        0x23EE,             // jne inner
        0x3FFF,             // done: jmp done
    };
}

/// Time of the processor, which other programs of the machine don't take part in: of this process,
/// or of the children that have ended.
double processorSeconds(int who)
{
    rusage usage;
    getrusage(who, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// How a run is watched.
enum class Watch { Nothing, Code, Data, Trace, Peripherals };

double runHere(const char* name, const std::vector<unsigned short>& code, unsigned done,
               Watch watch)
{
    MSP430Monitor monitor;
    if (watch == Watch::Peripherals) {
        monitor.setIdentifyString("MSP430F449");
        monitor.setEnablePeripheralFile(true);
    }
    monitor.connect(false);
    // Neither is ever met. The data breakpoint lies in the page that the program works in.
    HBreakpoint codeBreakpoint{.address = done + 2};
    HBreakpoint dataBreakpoint{.address = 0x310, .length = 2, .trigger = 2};
    if (watch == Watch::Code)
        monitor.setBreakpoint(&codeBreakpoint);
    if (watch == Watch::Data)
        monitor.setBreakpoint(&dataBreakpoint);
    monitor.setTraceEnabled(watch == Watch::Trace);
    constexpr unsigned watchdog = 0x120, holdWatchdog = 0x5A80, interruptsEnabled = 8;
    monitor.pokeMultUint16(0xFFFE, 1, &resetTo);
    monitor.reset(true, false);
    monitor.pokeMultUint16(start, static_cast<unsigned>(code.size()), code.data());
    monitor.pokeUint16(done, 0x4343);
    if (watch == Watch::Peripherals) {
        monitor.writeWord(watchdog, holdWatchdog);
        monitor.registers()->setValue(2, interruptsEnabled);
    }
    const double began = processorSeconds(RUSAGE_SELF);
    monitor.start(true, start);
    const double seconds = processorSeconds(RUSAGE_SELF) - began;
    if (monitor.stopReason() != StopReason::SoftwareBreakpoint)
        std::fprintf(stderr, "bench_simulator: the program did not reach its end\n");
    std::printf("%-10s%11llu instructions %8.3f s %8.1f MIPS\n", name,
                static_cast<unsigned long long>(monitor.runCounter()), seconds,
                static_cast<double>(monitor.runCounter()) / seconds / 1e6);
    return seconds;
}

std::string memoryWrites(const std::vector<unsigned short>& code)
{
    std::string text = "\"mw " + std::to_string(start);
    for (unsigned short word : code) {
        char bytes[8];
        std::snprintf(bytes, sizeof bytes, " %02x %02x", word & 0xFF, word >> 8);
        text += bytes;
    }
    return text + "\"";
}

/// Negative if mspdebug can't be run.
double runMspdebug(const std::vector<unsigned short>& code, unsigned done)
{
    char command[1024];
    std::snprintf(command, sizeof command,
                  "mspdebug -q sim %s \"set 0 %u\" \"set 2 0\" \"set 11 0\" \"setbreak %u\" run "
                  "exit </dev/null >/dev/null 2>&1",
                  memoryWrites(code).c_str(), start, done);
    const double began = processorSeconds(RUSAGE_CHILDREN);
    return std::system(command) == 0 ? processorSeconds(RUSAGE_CHILDREN) - began : -1;
}

} // namespace

int main(int argc, char** argv)
{
    const unsigned outerLoops = argc > 1 ? static_cast<unsigned>(std::atoi(argv[1])) : 10000;
    const std::vector<unsigned short> code = program(std::clamp(outerLoops, 1u, 65535u));
    const unsigned done = start + 2 * static_cast<unsigned>(code.size()) - 2;
    MacroSystem macros;
    macros.setupDefaultSystemMacros(QStringLiteral(GANTRY_ROOT_TREE));
    macros.setupPackageMacros(QStringLiteral(GANTRY_ROOT_TREE "/packages"));
    macroSystem = &macros;
    const double ours = runHere("ours", code, done, Watch::Nothing);
    constexpr std::pair<const char*, Watch> watches[] = {{"code", Watch::Code},
                                                         {"data", Watch::Data},
                                                         {"trace", Watch::Trace},
                                                         {"scripted", Watch::Peripherals}};
    for (const auto& [name, watch] : watches)
        std::printf("%-10s%8.2f times the free run\n", name,
                    runHere(name, code, done, watch) / ours);
    const double theirs = runMspdebug(code, done);
    if (theirs < 0) {
        std::printf("mspdebug  not available\n");
        return 0;
    }
    const double instructions = static_cast<double>(outerLoops) * innerLoops * innerLength;
    std::printf("mspdebug  %11.0f instructions %8.3f s %8.1f MIPS\n", instructions, theirs,
                instructions / theirs / 1e6);
    std::printf("ratio     %8.1f\n", theirs / ours);
    return 0;
}
