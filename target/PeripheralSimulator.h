#pragma once

#include "script/host/BuiltinScript.h"
#include "target/SimulatedPeripherals.h"

#include <memory>

class SimulatedHMonitor;

/// Peripherals whose behaviour a JavaScript file gives. The file defines the functions
/// storePeripheral(address, size, value), loadPeripheral(address, size, debug),
/// pollForInterrupts(cycles), reset() and connect(deviceName); it finds WScript, TargetInterface
/// and Simulator:
///
///     Simulator.cycleCount()   cycles since reset
///     Simulator.quiet(cycles)  no poll will find anything for so long, unless a register is
///                              accessed; Infinity for ever
///     Simulator.send(byte)     to the terminal
///     Simulator.receive()      the next byte from the terminal, -1 if there is none yet, or -2 if
///                              none will come any more
///     Simulator.load(name)     evaluates a file of the load path; false if there is none
///     Simulator.reset()        resets the processor ahead of its next instruction
///
/// What a script throws comes up as an HException: the error's message, which begins with its line.
class PeripheralSimulator : public BuiltinScript, public SimulatedPeripherals {
public:
    /// Evaluates the file; one that can't be opened is reported to the host and defines nothing.
    PeripheralSimulator(const QString& path, SimulatedHMonitor& monitor);
    ~PeripheralSimulator() override;

    void storePeripheral(unsigned address, unsigned size, unsigned value) override;
    unsigned loadPeripheral(unsigned address, unsigned size, bool debug) override;
    unsigned pollForInterrupts(unsigned cycles) override;
    void reset() override;
    void connect(QString deviceName) override;
    std::uint64_t quietUntil() const override { return m_quietUntil; }
    void requestStop() override;

private:
    class Context;
    class HostObject;

    unsigned run(ESString* function, std::initializer_list<ESValue> arguments);

    SimulatedHMonitor& m_monitor;
    std::unique_ptr<HostObject> m_host;
    std::unique_ptr<Context> m_context;
    std::uint64_t m_quietUntil = 0;
};
