#pragma once

#include "target/msp430/MSP430Devices.h"

/// What every MSP430 target offers besides its monitor.
class MSP430MonitorInterface {
public:
    /// The instruction that stops a program wherever it is met: `MOV.B #0, R3`, which no compiler
    /// makes.
    static constexpr unsigned SoftwareBreakpoint = 0x4343;

    virtual ~MSP430MonitorInterface() = default;
    /// True if a debugger may write SoftwareBreakpoint into the program.
    virtual bool enableSoftwareBreakpoints() = 0;

    MSP430Devices& devices() { return m_devices; }

protected:
    MSP430Devices m_devices;
};
