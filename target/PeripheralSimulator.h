#pragma once

#include <QString>

/// Supplies the behaviour of a simulated target's peripheral registers. Sizes are bytes, times are
/// cycles.
class PeripheralSimulator {
public:
    virtual ~PeripheralSimulator() = default;
    virtual void storePeripheral(unsigned address, unsigned size, unsigned value) = 0;
    /// `debug`: the reader is the debugger, so that a read must have no side effect.
    virtual unsigned loadPeripheral(unsigned address, unsigned size, bool debug) = 0;
    /// The address of the vector of an interrupt that has become due, or any other number for none.
    virtual unsigned pollForInterrupts(unsigned cycles) = 0;
    virtual void reset() = 0;
    virtual void connect(QString deviceName) = 0;
};
