#include "cli/DeviceSelection.h"

#include "cli/Command.h"
#include "target/msp430/MSP430Monitor.h"

void selectDevice(MSP430Monitor& monitor, const std::string& device)
{
    const MSP430DevicesPointer devices = MSP430DeviceLibrary::allocate();
    const int index = devices->find(device.c_str());
    if (index < 0)
        throw UsageError{"unknown device " + device};
    devices->select(index);
    monitor.setIdentifyString(devices->selectedName());
    monitor.setHardwareMultiplier(devices->multiplierBits() == 32 ? "32-Bit Multiplier"
                                                                  : "16-Bit Multiplier");
}
