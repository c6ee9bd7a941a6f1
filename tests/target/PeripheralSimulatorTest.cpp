#include "target/PeripheralSimulator.h"

#include "base/HException.h"
#include "target/msp430/MSP430Monitor.h"

#include "FailureMessage.h"
#include "TestFolder.h"

#include <QFile>

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>

namespace {

constexpr unsigned start = 0x8000;

class Host : public TargetInterfaceHelperFunctions {
public:
    using TargetInterfaceHelperFunctions::message;
    void message(const QString& text) override { messages << text; }
    void error(const QString& text) override { errors << text; }
    QStringList messages, errors;
};

class Terminal : public TargetIOServerTerminalInterface {
public:
    void addOutput(QString text) override { output += text.toStdString(); }
    QString getInputLine() override { return {}; }
    int inputLines() const override { return 0; }
    int getInputChar() override
    {
        const char c = input.front();
        input.erase(0, 1);
        return c;
    }
    bool inputCharAvailable() const override { return !input.empty(); }
    bool atEnd() const override { return input.empty(); }
    std::string output, input;
};

class PeripheralSimulatorTest : public testing::Test {
protected:
    PeripheralSimulatorTest() : monitor(&host) { monitor.setTerminal(&terminal); }

    void connectScript(const char* script)
    {
        monitor.setPeripheralFile(QString::fromStdString(folder.write("peripherals.js", script)));
        monitor.setEnablePeripheralFile(true);
        monitor.connect(false);
    }
    void connectDevice(const char* device)
    {
        monitor.setIdentifyString(device);
        monitor.setEnablePeripheralFile(true);
        monitor.connect(false);
    }
    void load(std::initializer_list<unsigned short> words, unsigned address = start)
    {
        monitor.pokeMultUint16(address, static_cast<unsigned>(words.size()), words.begin());
    }
    /// Starts with the stack and the vectors' targets of a program, for so many cycles.
    void run(std::uint64_t cycles, unsigned sr = 0)
    {
        monitor.registers()->setValue(1, 0x400);
        monitor.registers()->setValue(2, sr);
        go(cycles, start);
    }
    void go(std::uint64_t cycles, unsigned pc)
    {
        monitor.setRunLimits({.cycles = monitor.cycleCount() + cycles});
        monitor.start(true, pc);
    }
    unsigned reg(unsigned number) { return monitor.registers()->getValue(number); }
    void store(unsigned address, unsigned value) { monitor.writeWord(address, value); }
    void storeByte(unsigned address, unsigned value) { monitor.writeByte(address, value); }
    unsigned loadWord(unsigned address) { return monitor.readWord(address); }
    unsigned loadByte(unsigned address) { return monitor.readByte(address); }
    /// Lets time pass with nothing else happening: NOPs and a jump back to them.
    void pass(std::uint64_t cycles)
    {
        load({0x4303, 0x3FFE}, 0xA000);
        go(cycles, 0xA000);
    }

    TestFolder folder;
    Host host;
    Terminal terminal;
    MSP430Monitor monitor;
};

constexpr const char* minimal = R"(
var stores = 0;
function storePeripheral(address, size, value) { stores = stores * 1000 + value; }
function loadPeripheral(address, size, debug) { return debug ? 1 : address + size; }
function pollForInterrupts(cycles) { return stores == 7 ? 0xfff0 : undefined; }
function reset() { stores = 0; }
function connect(name) { TargetInterface.message("connected to " + name); }
)";

} // namespace

TEST_F(PeripheralSimulatorTest, TheFiveFunctionsOfAFileAreCalled)
{
    connectScript(minimal);
    EXPECT_EQ(host.messages, QStringList{QStringLiteral("connected to generic")});
    EXPECT_EQ(loadWord(0x160), 0x162u);
    EXPECT_EQ(loadByte(0x21), 0x22u);
    EXPECT_EQ(monitor.peekByte(0x21), 1u) << "the debugger's read says so";
    load({0x9000}, 0xFFF0);
    load({0x4343}, 0x9000);
    // mov.b #7, &0x21; eint; jmp $
    load({0x40F2, 7, 0x21, 0xD232, 0x3FFF});
    run(10000);
    EXPECT_EQ(monitor.stopReason(), StopReason::SoftwareBreakpoint);
    EXPECT_EQ(reg(0), 0x9000u) << "the poll's result is the vector that is taken";
}

TEST_F(PeripheralSimulatorTest, FailuresOfAFileAreReportedAndLeaveTheSessionUsable)
{
    EXPECT_EQ(messageOf([&] { connectScript("var a;\nfunction f( { }\n"); }).substr(0, 7),
              "line 2:");
    EXPECT_FALSE(monitor.isConnected());
    EXPECT_EQ(messageOf([&] { connectScript("throw 'no board';"); }),
              "Uncaught exception: no board");
    EXPECT_NE(messageOf([&] { connectScript("var a = 1;"); }).find("connect"), std::string::npos);
    EXPECT_EQ(
        messageOf([&] { connectScript("function connect(n) { TargetInterface.error('x'); }"); }),
        "x");
    EXPECT_EQ(host.messages.last(), QStringLiteral("error: x"));
    monitor.setPeripheralFile(QStringLiteral("/no/such/file.js"));
    EXPECT_NE(messageOf([&] { monitor.connect(false); }), "");
    EXPECT_EQ(host.errors, QStringList{QStringLiteral("Cannot open /no/such/file.js")});

    connectScript("function connect(n) { } function reset() { }\n"
                  "function loadPeripheral(a, s, d) { if (a == 0x20) throw 5;\n"
                  "  return deep(0); }\n"
                  "function deep(n) { return deep(n + 1) + 1; }\n");
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(messageOf([&] { loadByte(0x20); }), "Uncaught exception: 5");
        EXPECT_NE(messageOf([&] { loadByte(0x21); }), "") << "the stack is exhausted";
    }
    connectScript(minimal);
    EXPECT_EQ(loadByte(0x21), 0x22u);
}

TEST_F(PeripheralSimulatorTest, AScriptThatFailsInARunStopsIt)
{
    connectScript("function connect(n) { } function reset() { }\n"
                  "function loadPeripheral(a, s, d) {\n"
                  "  return none.such; }\n");
    load({0x4303, 0x4215, 0x20, 0x3FFF});
    EXPECT_EQ(messageOf([&] { run(1000); }).substr(0, 7), "line 3:");
    EXPECT_TRUE(monitor.isStopped());
    EXPECT_TRUE(monitor.isConnected());
    load({0x4316, 0x4343}); // mov #1, r6
    run(1000);
    EXPECT_EQ(reg(6), 1u) << "what touches no peripheral goes on";
}

TEST_F(PeripheralSimulatorTest, AScriptThatLoopsCanBeStopped)
{
    static MSP430Monitor* running;
    static int events;
    running = &monitor;
    events = 0;
    connectScript("function connect(n) { } function reset() { }\n"
                  "function loadPeripheral(a, s, d) { while (a == 0x20) { } return 4; }\n");
    monitor.setProcessEvents([] {
        if (++events == 3)
            running->stop();
    });
    load({0x4215, 0x20, 0x3FFF}); // mov &0x20, r5
    run(1000000);
    EXPECT_EQ(monitor.stopReason(), StopReason::Requested);
    monitor.setProcessEvents(nullptr);
    EXPECT_EQ(loadByte(0x21), 4u) << "the next call runs";
}

TEST_F(PeripheralSimulatorTest, APollIsLeftOutWhileAScriptIsQuiet)
{
    connectScript(R"(
var polls = 0, at = 0;
function storePeripheral(a, s, v) { }
function loadPeripheral(a, s, d) { return a == 0x20 ? polls : at; }
function pollForInterrupts(cycles) {
    polls++;
    if (polls == 2) { at = Simulator.cycleCount(); return 0xfff0; }
    Simulator.quiet(5000);
    return 0;
}
function reset() { }
function connect(name) { }
)");
    load({0x9000}, 0xFFF0);
    load({0x4343}, 0x9000);
    load({0x4303, 0x3FFE});
    run(100000, 8);
    EXPECT_EQ(reg(0), 0x9000u);
    EXPECT_EQ(monitor.peekByte(0x20), 2);
    EXPECT_GE(monitor.cycleCount(), 5000u);
    EXPECT_LT(monitor.cycleCount(), 5300u) << "the poll is not missed either";
}

// The devices' own peripherals -----------------------------------------------------------------

TEST_F(PeripheralSimulatorTest, TimersCountInTheirModes)
{
    connectDevice("MSP430F149");
    monitor.reset(true, false);
    store(0x120, 0x5A80); // hold the watchdog
    constexpr unsigned control = 0x160, counter = 0x170, cctl1 = 0x164, ccr0 = 0x172, ccr1 = 0x174;
    // SMCLK runs as the processor does. Each row: mode bits, CCR0, cycles, expected counter.
    const struct {
        unsigned mode, top;
        std::uint64_t cycles;
        unsigned counter;
        bool overflow;
    } rows[] = {
        {0x10, 99, 60, 60, false},        {0x10, 99, 150, 50, true},  {0x20, 99, 1000, 1000, false},
        {0x20, 99, 65536 + 10, 10, true}, {0x30, 100, 60, 60, false}, {0x30, 100, 150, 50, false},
        {0x30, 100, 230, 30, true},       {0x00, 99, 500, 0, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.mode << " after " << row.cycles);
        store(control, 4);
        store(ccr0, row.top);
        const std::uint64_t began = monitor.cycleCount();
        store(control, 0x200 | row.mode);
        pass(row.cycles);
        const auto late = static_cast<unsigned>(monitor.cycleCount() - began - row.cycles);
        const unsigned seen = loadWord(counter);
        const bool falling = row.mode == 0x30 && row.cycles == 150;
        EXPECT_EQ(seen, row.mode == 0 ? 0 : falling ? row.counter - late : row.counter + late);
        EXPECT_EQ((loadWord(control) & 1) != 0, row.overflow);
    }
    // A compare sets its flag when it is met, and TAIV tells and clears it.
    store(control, 4);
    store(ccr0, 999);
    store(ccr1, 300);
    store(cctl1, 0x10);
    store(control, 0x210);
    pass(250);
    EXPECT_EQ(loadWord(cctl1) & 1, 0u);
    pass(60);
    EXPECT_EQ(loadWord(cctl1) & 1, 1u);
    EXPECT_EQ(monitor.peekUint16(0x12E), 2u);
    EXPECT_EQ(loadWord(0x12E), 2u);
    EXPECT_EQ(loadWord(0x12E), 0u);
}

TEST_F(PeripheralSimulatorTest, ACaptureByTheProgramTakesTheCounter)
{
    connectDevice("MSP430F149");
    monitor.reset(true, false);
    store(0x120, 0x5A80);
    store(0x160, 0x220);
    store(0x164, 0xE100); // CM_3, CCIS_2: ground, CAP
    pass(500);
    store(0x164, 0xF100); // supply
    const unsigned captured = loadWord(0x174);
    EXPECT_GE(captured, 490u);
    EXPECT_LE(captured, 520u);
    EXPECT_EQ(loadWord(0x164) & 3, 1u);
    store(0x164, loadWord(0x164) & ~0x1000u);
    EXPECT_EQ(loadWord(0x164) & 3, 3u) << "the first was not taken: overflow";
}

TEST_F(PeripheralSimulatorTest, TheWatchdogResetsOrInterrupts)
{
    connectDevice("MSP430F149");
    load({0xA000}, 0xFFFE);
    load({0x4303, 0x3FFE}, 0xA000);
    load({0x4316, 0x3FFF}, start); // mov #1, r6
    monitor.reset(true, false);
    store(0x120, 0x5A00);
    run(40000, 8);
    EXPECT_GE(reg(0), 0xA000u) << "32768 cycles later it has reset the processor";
    EXPECT_EQ(loadByte(2) & 1, 1u) << "and says so";
    store(0x120, 0x5A80);
    storeByte(2, 0);

    load({0x9000}, 0xFFF4);
    load({0x4343}, 0x9000);
    storeByte(0, 1);
    store(0x120, 0x5A1B); // interval timer of 64 cycles
    const std::uint64_t began = monitor.cycleCount();
    run(2000, 8);
    EXPECT_EQ(reg(0), 0x9000u);
    EXPECT_LE(monitor.cycleCount() - began, 64u + 2 * 100);
    EXPECT_EQ(loadWord(0x120) >> 8, 0x69u);
    store(0x120, 0x1280); // the wrong password
    go(10, start);
    EXPECT_GE(reg(0), 0xA000u);
}

TEST_F(PeripheralSimulatorTest, PortsSeeTheirEdges)
{
    connectDevice("MSP430F149");
    monitor.reset(true, false);
    storeByte(0x22, 0x0F);
    storeByte(0x24, 0x02);
    storeByte(0x21, 0x03); // two pins rise; a rise of P1.1 is not asked for
    EXPECT_EQ(loadByte(0x20), 0x03u);
    EXPECT_EQ(loadByte(0x23), 0x01u);
    storeByte(0x21, 0x00);
    EXPECT_EQ(loadByte(0x23), 0x03u);
    storeByte(0x20, 0xFF);
    EXPECT_EQ(loadByte(0x20), 0u) << "inputs can't be written";
    monitor.disconnect();

    // The pairs and vector words of the 5xx.
    connectDevice("MSP430F5529");
    monitor.reset(true, false);
    store(0x15C, 0x5A80);
    store(0x204, 0xFFFF);
    store(0x21A, 0x00FF);
    store(0x202, 0x0104);
    EXPECT_EQ(loadWord(0x200), 0x0104u);
    EXPECT_EQ(loadWord(0x21C), 0x0104u);
    EXPECT_EQ(loadWord(0x20E), 6u) << "P1.2";
    EXPECT_EQ(loadWord(0x20E), 0u);
    EXPECT_EQ(loadByte(0x21D), 1u) << "port 2 keeps its own";
}

TEST_F(PeripheralSimulatorTest, SerialPortsSendAndReceive)
{
    const struct {
        const char* device;
        unsigned control, divider, receive, transmit, flags, rxBit, txBit;
    } ports[] = {
        {"MSP430F149", 0x70, 0x74, 0x76, 0x77, 2, 0x40, 0x80},
        {"MSP430G2553", 0x61, 0x62, 0x66, 0x67, 3, 1, 2},
        {"MSP430F5529", 0x5C0, 0x5C6, 0x5CC, 0x5CE, 0x5DD, 1, 2},
    };
    for (const auto& port : ports) {
        SCOPED_TRACE(port.device);
        terminal.output.clear();
        terminal.input = "ab";
        connectDevice(port.device);
        monitor.reset(true, false);
        store(port.control < 0x100 ? 0x120 : 0x15C, 0x5A80);
        const bool usart = port.control == 0x70;
        storeByte(port.control, usart ? 1 : 0x81);
        if (usart)
            storeByte(0x71, 0x20);
        storeByte(port.divider, 10);
        storeByte(port.control, usart ? 0 : 0x80);
        EXPECT_EQ(loadByte(port.flags) & port.txBit, port.txBit);
        storeByte(port.transmit, 'x');
        storeByte(port.transmit, 'y');
        EXPECT_EQ(loadByte(port.flags) & port.txBit, 0u) << "one on the line, one behind it";
        EXPECT_EQ(terminal.output, "x");
        pass(150);
        EXPECT_EQ(loadByte(port.flags) & port.txBit, port.txBit);
        EXPECT_EQ(terminal.output, "xy");
        std::string received;
        for (int i = 0; i < 20; ++i) {
            if ((loadByte(port.flags) & port.rxBit) != 0)
                received += static_cast<char>(loadByte(port.receive));
            pass(50);
        }
        EXPECT_EQ(received, "ab");
        monitor.disconnect();
    }
}

TEST_F(PeripheralSimulatorTest, ConversionsTakeTheirInputFromTheScript)
{
    const std::string file = folder.write("board.js", R"(
Simulator.load("msp430peripherals.js");
analogInput = function(channel) { return channel / 10; };
)");
    monitor.setPeripheralFile(QString::fromStdString(file));
    QFile::copy(QStringLiteral(GANTRY_ROOT_TREE "/targets/msp430peripherals.js"),
                QString::fromStdString(folder / "msp430peripherals.js"));
    QFile::link(QStringLiteral(GANTRY_ROOT_TREE "/targets/msp430peripherals"),
                QString::fromStdString(folder / "msp430peripherals"));
    monitor.setHardwareMultiplier("16-Bit Multiplier");
    connectDevice("MSP430F149");
    monitor.reset(true, false);
    store(0x120, 0x5A80);
    storeByte(0x80, 2);
    storeByte(0x81, 0x83); // end of the sequence
    store(0x1A2, 0x0002);  // a sequence of channels
    store(0x1A0, 0x0010);
    store(0x1A0, 0x0013);
    EXPECT_EQ(loadWord(0x1A2) & 1, 1u) << "busy";
    pass(100);
    EXPECT_EQ(loadWord(0x1A2) & 1, 0u);
    EXPECT_EQ(loadWord(0x1A4), 3u);
    EXPECT_EQ(loadWord(0x140), 819u);
    EXPECT_EQ(loadWord(0x142), 1229u);
    EXPECT_EQ(loadWord(0x1A4), 0u) << "reading takes the flags back";
    monitor.disconnect();

    connectDevice("MSP430G2553");
    monitor.reset(true, false);
    store(0x120, 0x5A80);
    store(0x1B2, 0x5000);
    store(0x1B0, 0x0013);
    pass(100);
    EXPECT_EQ(loadWord(0x1B0) & 4, 4u);
    EXPECT_EQ(loadWord(0x1B4), 512u);
}

TEST_F(PeripheralSimulatorTest, EveryDeviceHasPeripheralsThatRun)
{
    const MSP430DevicesPointer devices = MSP430DeviceLibrary::allocate();
    for (int i = 1; i <= devices->highestIndex(); i += 9) {
        SCOPED_TRACE(devices->name(i));
        connectDevice(devices->name(i));
        monitor.reset(true, false);
        EXPECT_EQ(messageOf([&] {
                      for (unsigned address = 0x10; address < 0x200; address += 2) {
                          loadWord(address);
                          loadByte(address + 1);
                      }
                      pass(200);
                  }),
                  "");
        monitor.disconnect();
    }
    EXPECT_FALSE(host.messages.join(u' ').contains(QStringLiteral("No peripherals")))
        << host.messages.join(u'\n').toStdString();
}
