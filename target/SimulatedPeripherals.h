#pragma once

#include <QString>

#include <cstdint>
#include <limits>

/// The behaviour of a simulated target's peripheral registers. Sizes are bytes, times are cycles.
/// A failure is an HException and ends the run.
class SimulatedPeripherals {
public:
    static constexpr std::uint64_t Never = std::numeric_limits<std::uint64_t>::max();

    virtual ~SimulatedPeripherals() = default;
    virtual void storePeripheral(unsigned address, unsigned size, unsigned value) = 0;
    /// `debug`: the reader is the debugger, so that a read must have no side effect.
    virtual unsigned loadPeripheral(unsigned address, unsigned size, bool debug) = 0;
    /// The address of the vector of an interrupt that has become due, or any other number for none.
    /// `cycles` have passed since the last call.
    virtual unsigned pollForInterrupts(unsigned cycles) = 0;
    virtual void reset() = 0;
    virtual void connect(QString deviceName) = 0;

    /// Until this cycle count a poll would find nothing, unless a register is accessed before. A
    /// count that has passed means that it isn't known.
    virtual std::uint64_t quietUntil() const { return 0; }
    /// Ends what runs as soon as it can; may be called at any time.
    virtual void requestStop() { }
};
