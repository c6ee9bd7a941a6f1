#pragma once

#include "target/msp430/devices/MSP430DevicesInterface.h"

#include <QString>

#include <memory>

/// Gives back the device object.
struct MSP430DevicesRelease {
    void operator()(MSP430DevicesInterface* devices) const;
};
/// A device object of one owner, with a selection of its own.
using MSP430DevicesPointer = std::unique_ptr<MSP430DevicesInterface, MSP430DevicesRelease>;

/// The device library of the installation. It is loaded when a device object is first asked for
/// and stays loaded; a failed load is tried again.
class MSP430DeviceLibrary {
public:
    /// Throws HException: "cannot access "PATH"", the loader's text, or "cannot find symbol
    /// "AllocateMSP430Devices" in DLL".
    static MSP430DevicesPointer allocate();
    /// Where the library lies, with macros.
    static QString path();
    /// Forgets the library, so that the next object comes from a newly loaded one. No object may
    /// be alive.
    static void unload();
};
