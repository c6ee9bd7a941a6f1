#pragma once

#include "target/msp430/MSP430DeviceLibrary.h"

/// What every MSP430 target offers besides its monitor.
class MSP430MonitorInterface {
public:
    /// The instruction that stops a program wherever it is met: `MOV.B #0, R3`, which no compiler
    /// makes.
    static constexpr unsigned SoftwareBreakpoint = 0x4343;

    virtual ~MSP430MonitorInterface() = default;
    /// True if a debugger may write SoftwareBreakpoint into the program.
    virtual bool enableSoftwareBreakpoints() = 0;

    /// The device library's object; null while not connected.
    MSP430DevicesInterface* devices() const { return m_devices.get(); }

protected:
    /// Takes an object of the device library. Throws HException as MSP430DeviceLibrary::allocate.
    void connectDevices() { m_devices = MSP430DeviceLibrary::allocate(); }
    void releaseDevices() { m_devices.reset(); }

    MSP430DevicesPointer m_devices;
};
