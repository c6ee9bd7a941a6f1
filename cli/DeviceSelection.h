#pragma once

#include <string>

class MSP430Monitor;

/// Has the simulator be that device when it is connected. Throws UsageError for an unknown name,
/// and HException if the device library can't be loaded.
void selectDevice(MSP430Monitor& monitor, const std::string& device);
