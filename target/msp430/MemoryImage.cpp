#include "target/msp430/MemoryImage.h"

#include <algorithm>
#include <cstring>

MemoryImage::MemoryImage(const MSP430DevicesInterface& device, const AddressRanges& valid,
                         bool multiplier32)
    : m_peripheralStart(device.peripheralStart()),
      m_peripheralWordStart(device.peripheralWordStart()),
      m_peripheralEnd(device.peripheralEnd()),
      m_multiplierStart(device.multiplierStart()),
      m_bytes(std::make_unique<unsigned char[]>(Size)),
      m_multiplier(multiplier32)
{
    std::memset(m_bytes.get(), UnwrittenByte, Size);
    constexpr std::uint32_t last = (1u << PageShift) - 1;
    for (std::uint32_t page = 0; page < m_valid.size(); ++page) {
        const std::uint32_t start = page << PageShift;
        m_valid[page] = !isPeripheral(start) && !isPeripheral(start + last)
            && valid.find(start, start + last) != nullptr;
    }
    unwatchAll();
}

void MemoryImage::watch(std::uint32_t first, std::uint32_t last)
{
    // A word in front of the span reaches into it.
    setPages(m_plain, false, first == 0 ? 0 : first - 1, last);
}

void MemoryImage::setPages(Pages& pages, bool value, std::uint32_t first, std::uint32_t last)
{
    if (first >= Size)
        return;
    const std::uint32_t end = last < first ? Size - 1 : std::min(last, Size - 1);
    for (std::uint32_t page = first >> PageShift; page <= end >> PageShift; ++page)
        pages[page] = value;
}

unsigned MemoryImage::load(std::uint32_t address, unsigned size, bool debug,
                           SimulatedPeripherals* peripherals)
{
    const unsigned mask = size == 1 ? 0xFF : 0xFFFF;
    if (!isPeripheral(address))
        return loadBytes(address, size);
    if (isMultiplier(address))
        return m_multiplier.load(address - m_multiplierStart) & mask;
    if (peripherals != nullptr)
        return peripherals->loadPeripheral(address, size, debug) & mask;
    return loadBytes(address, size);
}

void MemoryImage::store(std::uint32_t address, unsigned size, unsigned value,
                        SimulatedPeripherals* peripherals)
{
    if (!isPeripheral(address))
        storeBytes(address, size, value);
    else if (isMultiplier(address))
        m_multiplier.store(address - m_multiplierStart, value);
    else if (peripherals != nullptr)
        peripherals->storePeripheral(address, size, value);
    else
        storeBytes(address, size, value);
}

unsigned MemoryImage::loadBytes(std::uint32_t address, unsigned size) const
{
    return size == 1 ? byte(address) : word(address);
}

void MemoryImage::storeBytes(std::uint32_t address, unsigned size, unsigned value)
{
    if (size == 1)
        setByte(address, value);
    else
        setWord(address, value);
}
