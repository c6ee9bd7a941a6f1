#include "target/msp430/MSP430Monitor.h"

#include "InstalledTree.h"

#include "base/HException.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>

namespace {

constexpr unsigned start = 0x8000;

class MonitorTest : public testing::Test {
protected:
    MonitorTest()
    {
        monitor.connect(false);
        monitor.setRunLimits({.passes = 100000});
    }

    void load(std::initializer_list<unsigned short> words, unsigned address = start)
    {
        monitor.pokeMultUint16(address, static_cast<unsigned>(words.size()), words.begin());
    }
    unsigned reg(unsigned number) { return monitor.registers()->getValue(number); }
    void setReg(unsigned number, unsigned value) { monitor.registers()->setValue(number, value); }
    void runTo(unsigned address, std::uint64_t passes = 1000)
    {
        HBreakpoint end{.address = address};
        monitor.setBreakpoint(&end);
        monitor.setRunLimits({.passes = passes});
        monitor.start(true, start);
        EXPECT_EQ(monitor.matched(), &end);
        monitor.removeBreakpoint(&end);
    }

    MSP430Monitor monitor;
};

class FakePeripherals : public SimulatedPeripherals {
public:
    void storePeripheral(unsigned address, unsigned size, unsigned value) override
    {
        stores.push_back({address, size, value});
    }
    unsigned loadPeripheral(unsigned address, unsigned, bool debug) override
    {
        return debug ? 0xDE : address;
    }
    unsigned pollForInterrupts(unsigned cycles) override
    {
        polled += cycles;
        return due;
    }
    void reset() override { }
    void connect(QString) override { }

    struct Access {
        unsigned address, size, value;
        bool operator==(const Access&) const = default;
    };
    std::vector<Access> stores;
    unsigned polled = 0;
    unsigned due = 0;
};

} // namespace

TEST_F(MonitorTest, ConnectAnswersForTheSelectedDevice)
{
    EXPECT_EQ(monitor.title(), QStringLiteral("MSP430 Core Simulator"));
    EXPECT_EQ(monitor.capabilities(), 0x2bfu);
    EXPECT_EQ(monitor.peekByte(0x8000), 0xCD);
    monitor.pokeByte(0x8000, 1);
    monitor.disconnect();
    EXPECT_THROW(monitor.go(), HException);
    monitor.setIdentifyString("MSP430F149;MSP430F5529");
    monitor.connect(false);
    EXPECT_EQ(monitor.deviceId(), QStringLiteral("MSP430F5529"));
    EXPECT_EQ(monitor.addressDisplayWidthInCharacters(), 5u);
    EXPECT_EQ(monitor.getNumInterrupts(), 64);
    EXPECT_EQ(monitor.peekByte(0x8000), 0xCD);
    EXPECT_TRUE(monitor.memoryExists(0x243FE, 2));
    EXPECT_FALSE(monitor.memoryExists(0x243FF, 2));
    EXPECT_FALSE(monitor.memoryExists(0x1A00, 1));
}

TEST_F(MonitorTest, ResetTakesThePCFromItsVector)
{
    load({0x9000}, 0xFFFE);
    setReg(2, 0xFF);
    monitor.reset(true, false);
    EXPECT_EQ(reg(0), 0x9000u);
    EXPECT_EQ(reg(2), 0u);
}

TEST_F(MonitorTest, SoftwareBreakpointStopsAStepAndIsPassedByGo)
{
    load({0x4315, 0x4343, 0x4316, 0x4343});
    monitor.start(true, start);
    EXPECT_EQ(monitor.stopReason(), StopReason::SoftwareBreakpoint);
    EXPECT_EQ(reg(0), start + 2);
    monitor.step();
    EXPECT_EQ(reg(0), start + 2);
    EXPECT_TRUE(monitor.isStopped());
    monitor.go();
    EXPECT_EQ(reg(0), start + 6);
}

TEST_F(MonitorTest, ExecutionBreakpoints)
{
    load({0x4303, 0x4303, 0x4303, 0x3FFC});
    HBreakpoint second{.address = start + 2};
    monitor.setBreakpoint(&second);
    monitor.start(true, start + 2);
    EXPECT_EQ(reg(0), start + 2) << "a first run from a new PC stops at once";
    monitor.go();
    EXPECT_EQ(reg(0), start + 2);
    EXPECT_EQ(monitor.cycleCount(), 5u) << "once round the loop of three NOPs and a jump";
    second.inverse = true;
    second.length = 4;
    monitor.go();
    EXPECT_EQ(reg(0), start + 6);
    second.enabled = false;
    monitor.setRunLimits({.passes = 10});
    monitor.go();
    EXPECT_EQ(monitor.stopReason(), StopReason::PassLimit);
}

TEST_F(MonitorTest, DataAndRegisterBreakpoints)
{
    // mov #5, &0x300; mov &0x300, r6; jmp $
    load({0x40B2, 0x0005, 0x0300, 0x4216, 0x0300, 0x3FFF});
    const auto stopsAt = [&](HBreakpoint breakpoint) {
        monitor.clear();
        monitor.setBreakpoint(&breakpoint);
        monitor.setRunLimits({.passes = 20});
        monitor.start(true, start);
        const bool matched = monitor.matched() == &breakpoint;
        monitor.clear();
        return matched ? reg(0) : 0;
    };
    EXPECT_EQ(stopsAt({.address = 0x300, .trigger = 2}), start + 6) << "write";
    EXPECT_EQ(stopsAt({.address = 0x300, .trigger = 1}), start + 6) << "MOV reads its destination";
    EXPECT_EQ(stopsAt({.address = 0x2FF, .length = 4, .trigger = 2}), start + 6) << "range";
    EXPECT_EQ(stopsAt({.address = 0x300, .length = 2, .trigger = 2, .valued = true, .value = 5}),
              start + 6);
    EXPECT_EQ(stopsAt({.address = 0x300, .length = 2, .trigger = 2, .valued = true, .value = 6}),
              0u);
    EXPECT_EQ(stopsAt({.address = 0x300, .length = 1, .trigger = 2, .valued = true, .value = 5}),
              0u)
        << "size";
    EXPECT_EQ(
        stopsAt(
            {.address = 0x300, .length = 2, .trigger = 2, .valued = true, .mask = 1, .value = 3}),
        start + 6);
    const std::pair<unsigned, unsigned> comparisons[] = {
        {1, start + 6}, {2, 0}, {3, start + 6}, {4, 0}};
    for (const auto& [comparison, where] : comparisons)
        EXPECT_EQ(stopsAt({.address = 0x300,
                           .length = 2,
                           .trigger = 2,
                           .valued = true,
                           .value = 4,
                           .comparison = comparison}),
                  where);
    EXPECT_EQ(stopsAt({.address = 6, .isRegister = true, .trigger = 2}), start + 10);
    EXPECT_EQ(stopsAt({.address = 6, .isRegister = true, .trigger = 2, .valued = true, .value = 9}),
              0u);
    HBreakpoint fails{.address = 0x302, .trigger = 2};
    EXPECT_EQ(stopsAt({.address = 0x300, .trigger = 2, .next = &fails}), 0u)
        << "every term of a chain has to match";
}

TEST_F(MonitorTest, ABreakpointArmsAnotherAndATraceActionGoesOn)
{
    load({0x4303, 0x4303, 0x4303, 0x3FFC});
    HBreakpoint first{.address = start + 4};
    HBreakpoint second{.enabled = false, .address = start + 2, .enabledBy = &first};
    HBreakpoint traced{.address = start + 6, .action = 1};
    for (HBreakpoint* breakpoint : {&first, &second, &traced})
        monitor.setBreakpoint(breakpoint);
    monitor.start(true, start);
    EXPECT_EQ(monitor.matched(), &second);
    unsigned address = 0, data = 1, cycles = 0;
    monitor.iterateTrace();
    ASSERT_TRUE(monitor.getNextTrace(address, data, cycles));
    EXPECT_EQ(address, start + 6);
    EXPECT_EQ(cycles, 3u);
    EXPECT_FALSE(monitor.getNextTrace(address, data, cycles));
}

TEST_F(MonitorTest, TraceKeepsTheNewestAndCountsSkipWhatNeverRan)
{
    load({0x4303, 0x4303, 0x3FFD});
    monitor.setTraceEnabled(true);
    for (const int size : {2, 0}) {
        monitor.setTraceBufferSize(size);
        monitor.setRunLimits({.passes = 5});
        monitor.start(true, start);
        unsigned address = 0, data = 0, cycles = 0, entries = 0;
        for (monitor.iterateTrace(); monitor.getNextTrace(address, data, cycles);)
            ++entries;
        EXPECT_EQ(entries, size == 0 ? 1u : 2u);
        EXPECT_EQ(address, start + 2);
    }
    unsigned address = 0, count = 0, extra = 0;
    std::vector<std::pair<unsigned, unsigned>> counts;
    for (monitor.iterateExecutionCount(); monitor.getNextExecutionCount(address, count, extra);)
        counts.emplace_back(address, count);
    EXPECT_EQ(
        counts,
        (std::vector<std::pair<unsigned, unsigned>>{{start, 4}, {start + 2, 4}, {start + 4, 2}}));
}

TEST_F(MonitorTest, ErrorsStopOnlyWhereEnabled)
{
    monitor.disconnect();
    monitor.setIdentifyString("MSP430F149");
    monitor.connect(false);
    const struct {
        unsigned number;
        std::initializer_list<unsigned short> words;
        unsigned address;
    } faults[] = {
        {0, {0x13C5, 0x4303}, 0x13C5},         {1, {0x4215, 0x0C00, 0x4303}, 0x0C00},
        {2, {0x43C2, 0x0C00, 0x4303}, 0x0C00}, {6, {0x4215, 0x0301, 0x4303}, 0x0301},
        {7, {0x1205, 0x4303}, 0x02FF},
    };
    for (const auto& fault : faults) {
        monitor.clear();
        load(fault.words);
        const char* text = monitor.getError(static_cast<int>(fault.number));
        for (bool enabled : {false, true}) {
            monitor.setErrorEnabled(text, enabled);
            EXPECT_EQ(monitor.errorEnabled(text), enabled);
            setReg(1, 0x301);
            monitor.setRunLimits({.passes = 1});
            monitor.start(true, start);
            unsigned address = 0;
            EXPECT_STREQ(monitor.lastError(address), enabled ? text : nullptr);
            EXPECT_EQ(address, enabled ? fault.address : 0u);
        }
    }
    EXPECT_EQ(monitor.numErrors(), 8);
    EXPECT_STREQ(monitor.getError(8), "Invalid Error");
    monitor.setErrorEnabled("no such text", true);
    EXPECT_TRUE(monitor.errorEnabled("Misc error"));
}

TEST_F(MonitorTest, InterruptsAreTakenFromTheHighestDown)
{
    load({0x4303, 0x3FFE});
    load({0x9000}, 0xFFF0);
    load({0xA000}, 0xFFF2);
    load({0x1300}, 0x9000);
    load({0x1300}, 0xA000);
    setReg(1, 0x400);
    setReg(2, 0x8);
    monitor.setInterruptPollInterval(0);
    monitor.raiseInterrupt(8);
    monitor.raiseInterrupt(9);
    monitor.setRunLimits({.passes = 1});
    monitor.start(true, start);
    EXPECT_EQ(reg(0), start) << "RETI of the handler at 0xA000 came back";
    EXPECT_EQ(monitor.peekUint16(0x3FC), 8) << "SR as it was";
    EXPECT_EQ(monitor.peekUint16(0x3FE), start);
    EXPECT_EQ(reg(2), 8u);
    unsigned address = 0, count = 0, extra = 0;
    monitor.iterateExecutionCount();
    ASSERT_TRUE(monitor.getNextExecutionCount(address, count, extra));
    EXPECT_EQ(address, 0xA000u);

    unsigned number = 0;
    QString name, description;
    monitor.getInterruptInformation(9, number, name, description);
    EXPECT_EQ(name, QStringLiteral("Priority 9 - 0xfff2"));
    EXPECT_EQ(number, 9u);
}

TEST_F(MonitorTest, ASleepingProcessorWaitsForAnInterrupt)
{
    load({0x4303});
    load({0x9000}, 0xFFF0);
    load({0x4315, 0x3FFF}, 0x9000);
    setReg(1, 0x400);
    setReg(2, 0x18);
    EXPECT_TRUE(monitor.isAsleepForGood());
    monitor.setRunLimits({.passes = 50});
    monitor.start(true, start);
    EXPECT_EQ(reg(0), start);
    EXPECT_EQ(monitor.runCounter(), 50u);
    monitor.raiseInterrupt(8);
    EXPECT_FALSE(monitor.isAsleepForGood());
    monitor.setRunLimits({.passes = 1});
    monitor.go();
    EXPECT_EQ(reg(0), 0x9002u);
    EXPECT_EQ(reg(2), 0u) << "GIE and CPUOFF are cleared";
}

TEST_F(MonitorTest, PeripheralsSeeTheProgramAndTheDebuggerApart)
{
    auto owned = std::make_unique<FakePeripherals>();
    FakePeripherals& peripherals = *owned;
    monitor.setPeripheralSimulator(std::move(owned));
    // mov.b #1, &0x21; mov &0x160, r6; mov #3, &0x160
    load({0x43D2, 0x0021, 0x4216, 0x0160, 0x40B2, 0x0003, 0x0160, 0x4303});
    runTo(start + 14);
    EXPECT_EQ(peripherals.stores,
              (std::vector<FakePeripherals::Access>{{0x21, 1, 1}, {0x160, 2, 3}}));
    EXPECT_EQ(reg(6), 0x160u);
    EXPECT_EQ(monitor.peekByte(0x21), 0xDE);

    load({0x9000}, 0xFFF0);
    load({0x3FFF}, 0x9000);
    load({0x3FFF});
    setReg(1, 0x400);
    setReg(2, 8);
    peripherals.due = 0xFFF0;
    monitor.setRunLimits({.passes = 200});
    monitor.start(true, start);
    EXPECT_EQ(reg(0), 0x9000u);
    EXPECT_GE(peripherals.polled, 100u);
}

TEST_F(MonitorTest, TheMultiplierStandsInTheMemoryMap)
{
    monitor.setHardwareMultiplier("16-Bit Multiplier");
    monitor.connect(false);
    // mov #300, &0x130; mov #400, &0x138; mov &0x13a, r6; mov &0x13c, r7
    load({0x40B2, 300, 0x0130, 0x40B2, 400, 0x0138, 0x4216, 0x013A, 0x4217, 0x013C, 0x4303});
    runTo(start + 20);
    EXPECT_EQ(reg(6), 120000u & 0xFFFF);
    EXPECT_EQ(reg(7), 120000u >> 16);
    EXPECT_EQ(monitor.peekUint16(0x13A), 120000u & 0xFFFF);
}

TEST(SimulatedFlash, ErasingLeavesOnesAndTouchesNothingElse)
{
    MSP430Monitor monitor;
    monitor.setIdentifyString("MSP430F449");
    monitor.connect(false);
    TargetInterface& target = monitor;
    monitor.pokeUint16(0x200, 0x1234);
    monitor.pokeUint16(0x8000, 0x1234);
    monitor.pokeUint16(0x8002, 0x5678);
    target.eraseBytes(&monitor, nullptr, 0x8000, 2);
    EXPECT_EQ(monitor.peekUint16(0x8000), 0xFFFF);
    EXPECT_EQ(monitor.peekUint16(0x8002), 0x5678);
    target.loadBegin();
    target.eraseAll();
    EXPECT_TRUE(target.codeErasedRanges().find(0x8000)) << "remembered for the load";
    target.loadEnd();
    EXPECT_EQ(monitor.peekUint16(0x8002), 0xFFFF);
    EXPECT_EQ(monitor.peekUint16(0x200), 0x1234);
}

TEST_F(MonitorTest, PeekingMatchesNothingAndReachesEveryByte)
{
    HBreakpoint watch{.address = 0x300, .length = 2, .trigger = 1};
    monitor.setBreakpoint(&watch);
    const unsigned char bytes[] = {1, 2, 3, 4, 5};
    monitor.pokeBytes(0x1FD, 5, bytes);
    unsigned char back[5] = {};
    monitor.peekBytes(0x1FD, 5, back);
    EXPECT_TRUE(std::equal(bytes, bytes + 5, back));
    monitor.peekBytes(0x300, 2, back);
    EXPECT_EQ(monitor.matched(), nullptr);
    unsigned char beyond[4] = {9, 9, 9, 9};
    monitor.peekBytes(0xFFFFE, 4, beyond);
    EXPECT_EQ(beyond[2], 0);
    monitor.pokeBytes(0xFFFFFFFE, 4, bytes);
}

TEST_F(MonitorTest, WatchedAndUnwatchedRunsAgree)
{
    // The program of the benchmark: arithmetic in memory and registers.
    load({0x4031, 0x0400, 0x403A, 20,     0x4034, 0x0300, 0x4305, 0x4316, 0x5605,
          0xE506, 0x4684, 0,      0x50B4, 3,      0,      0x4127, 0x6708, 0x1108,
          0x1089, 0x531B, 0x903B, 50,     0x23F1, 0x430B, 0x831A, 0x23EE, 0x4343});
    const auto outcome = [&](bool watched) {
        monitor.clear();
        HBreakpoint never{.address = 0x9000, .trigger = 2};
        if (watched)
            monitor.setBreakpoint(&never);
        for (unsigned i = 0; i < 16; ++i)
            setReg(i, 0);
        monitor.pokeUint16(0x400, 0x1234);
        monitor.setRunLimits({});
        const std::uint64_t cycles = monitor.cycleCount();
        monitor.start(true, start);
        std::vector<std::uint64_t> values{monitor.cycleCount() - cycles};
        for (unsigned i = 0; i < 16; ++i)
            values.push_back(reg(i));
        monitor.clear();
        return values;
    };
    EXPECT_EQ(outcome(false), outcome(true));
}
