#pragma once

#include <cstdint>
#include <span>
#include <string_view>

/// What the target layer knows of one device. Addresses are bytes and both ends are inclusive; a
/// start and end of 0 mean that there is no such memory.
struct MSP430Device {
    const char* name; ///< upper case, as "MSP430F149"
    std::uint32_t peripheralStart;
    std::uint32_t peripheralWordStart; ///< peripherals from here on are accessed by whole words
    std::uint32_t peripheralEnd;
    std::uint32_t ramStart, ramEnd;
    std::uint32_t ram2Start, ram2End; ///< used in place of the first RAM
    std::uint32_t infoStart, infoEnd;
    std::uint32_t infoSegmentSize;
    std::uint32_t bslStart, bslEnd;
    std::uint32_t mainStart, mainEnd; ///< with the vectors and the memory above 64 KB
    std::uint32_t vectors;            ///< 16, 32 or 64 two-byte vectors, which end at 0xFFFF
    std::uint32_t multiplierStart;
    std::uint32_t multiplierBits; ///< 0 without a hardware multiplier, 16 or 32
    bool extendedCore;            ///< MSP430X: 20-bit registers and addresses

    std::uint32_t vectorBase() const { return 0x10000 - 2 * vectors; }
};

/// The device library: every known device, one of which is selected. Device 0 is "generic", which
/// stands for no device in particular: all memory above its peripherals is there.
class MSP430Devices {
public:
    /// Highest device index.
    int highestIndex() const { return static_cast<int>(all().size()) - 1; }
    const char* name(int index) const { return at(index).name; }
    void select(int index) { m_selected = &at(index); }
    /// Selects by name, in upper or lower case; false, with the selection as it was, if unknown.
    bool select(std::string_view name);
    const MSP430Device& selected() const { return *m_selected; }

    static std::span<const MSP430Device> all();

private:
    static const MSP430Device& at(int index);

    const MSP430Device* m_selected = &all().front();
};
