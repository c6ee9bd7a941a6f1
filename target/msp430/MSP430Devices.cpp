#include "target/msp430/MSP430Devices.h"

#include <algorithm>
#include <cctype>

namespace {

constexpr MSP430Device devices[] = {
    {"generic", 0, 0x100, 0x1FF, 0x200, 0xFFFF, 0, 0, 0, 0, 0x80, 0, 0, 0x10000, 0xFFFFF, 16, 0x130,
     16, true},
#include "MSP430DeviceTable.inc"
};

bool equalIgnoringCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return std::toupper(static_cast<unsigned char>(x))
            == std::toupper(static_cast<unsigned char>(y));
    });
}

} // namespace

std::span<const MSP430Device> MSP430Devices::all() { return devices; }

const MSP430Device& MSP430Devices::at(int index)
{
    return all()[static_cast<std::size_t>(
        std::clamp(index, 0, static_cast<int>(all().size()) - 1))];
}

bool MSP430Devices::select(std::string_view name)
{
    for (const MSP430Device& device : all()) {
        if (!equalIgnoringCase(device.name, name))
            continue;
        m_selected = &device;
        return true;
    }
    return false;
}
