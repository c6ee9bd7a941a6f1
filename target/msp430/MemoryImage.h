#pragma once

#include "objfile/loadfiles/AddressRanges.h"
#include "target/SimulatedPeripherals.h"
#include "target/msp430/Multiplier.h"
#include "target/msp430/devices/MSP430DevicesInterface.h"

#include <array>
#include <cstdint>
#include <memory>

/// The simulated memory: a byte for every address of the 20-bit space, and in front of its
/// peripheral part the hardware multiplier and the peripheral simulator.
///
/// A page is 256 bytes. One that is valid throughout and has no peripheral in it is plain: accesses
/// of it need no test but that of their alignment, unless it is watched.
class MemoryImage {
public:
    static constexpr std::uint32_t Size = 0x100000;
    /// What memory holds before anything is written.
    static constexpr unsigned char UnwrittenByte = 0xCD;

    MemoryImage(const MSP430DevicesInterface& device, const AddressRanges& valid,
                bool multiplier32);

    bool isPlain(std::uint32_t address) const
    {
        return address < Size && m_plain[address >> PageShift];
    }
    /// True in a page that is valid throughout and has no peripheral, watched or not.
    bool isOrdinary(std::uint32_t address) const
    {
        return address < Size && m_valid[address >> PageShift];
    }
    /// Watched pages aren't plain: accesses of them are to be reported.
    void unwatchAll()
    {
        m_plain = m_valid;
        m_hasBreakpoint = {};
    }
    void watch(std::uint32_t first, std::uint32_t last);
    /// Pages in which the PC has to be compared with the code breakpoints.
    void markBreakpoint(std::uint32_t first, std::uint32_t last)
    {
        setPages(m_hasBreakpoint, true, first, last);
    }
    bool mayHaveBreakpoint(std::uint32_t address) const
    {
        return m_hasBreakpoint[address >> PageShift];
    }
    bool isPeripheral(std::uint32_t address) const
    {
        return address >= m_peripheralStart && address <= m_peripheralEnd;
    }
    std::uint32_t peripheralWordStart() const { return m_peripheralWordStart; }
    std::uint32_t peripheralEnd() const { return m_peripheralEnd; }

    // The bytes themselves; the address must be below Size, a word's must be even.
    unsigned byte(std::uint32_t address) const { return m_bytes[address]; }
    void setByte(std::uint32_t address, unsigned value)
    {
        m_bytes[address] = static_cast<unsigned char>(value);
    }
    unsigned word(std::uint32_t address) const
    {
        return m_bytes[address] | static_cast<unsigned>(m_bytes[address + 1]) << 8;
    }
    void setWord(std::uint32_t address, unsigned value)
    {
        m_bytes[address] = static_cast<unsigned char>(value);
        m_bytes[address + 1] = static_cast<unsigned char>(value >> 8);
    }
    unsigned char* bytes() { return m_bytes.get(); }

    /// An access of `size` bytes, 1 or 2, that may reach a peripheral; `peripherals` may be null.
    unsigned load(std::uint32_t address, unsigned size, bool debug,
                  SimulatedPeripherals* peripherals);
    void store(std::uint32_t address, unsigned size, unsigned value,
               SimulatedPeripherals* peripherals);

private:
    static constexpr unsigned PageShift = 8;
    using Pages = std::array<bool, (Size >> PageShift)>;
    static void setPages(Pages& pages, bool value, std::uint32_t first, std::uint32_t last);

    bool isMultiplier(std::uint32_t address) const
    {
        return m_multiplierStart != 0 && address - m_multiplierStart < m_multiplier.length();
    }
    unsigned loadBytes(std::uint32_t address, unsigned size) const;
    void storeBytes(std::uint32_t address, unsigned size, unsigned value);

    std::uint32_t m_peripheralStart;
    std::uint32_t m_peripheralWordStart;
    std::uint32_t m_peripheralEnd;
    std::uint32_t m_multiplierStart;
    std::unique_ptr<unsigned char[]> m_bytes;
    Pages m_valid{}; ///< plain but for what is watched
    Pages m_plain{};
    Pages m_hasBreakpoint{};
    Multiplier m_multiplier;
};
