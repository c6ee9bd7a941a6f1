#include "target/msp430/MSP430TargetInterfaceFactory.h"

#include "target/msp430/MSP430Monitor.h"

#include <cstring>

MSP430TargetInterfaceFactory::MSP430TargetInterfaceFactory()
{
    m_infos = {
        {"MSP430Monitor", "sim", "MSP430 Core Simulator", true},
        {"MSP430USBGantryLinkTargetInterface", "usb", "MSP430 USB GantryLink", false},
        {"MSP430DLLTargetInterface", "msp430_dll", "MSP430 DLL Interface", false},
    };
}

std::unique_ptr<TargetInterface> MSP430TargetInterfaceFactory::create(const char* classname)
{
    if (std::strcmp(classname, "MSP430Monitor") == 0)
        return std::make_unique<MSP430Monitor>(targetInterfaceHelperFunctions());
    return nullptr;
}
