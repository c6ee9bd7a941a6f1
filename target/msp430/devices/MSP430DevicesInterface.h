#pragma once

#include <array>
#include <cstdint>

/// How a device is told by the 16 bytes of its device information and by its fuses.
struct MSP430MatchRecord {
    /// As a value it matches anything; as the fuse value, no fuses are checked.
    static constexpr std::uint32_t Any = 0xFFFFFFFF;
    /// The bytes of the device information that are compared.
    static constexpr std::array<unsigned, 7> Offsets = {0, 1, 2, 3, 8, 9, 13};

    std::array<std::uint32_t, 7> bytes;
    std::uint32_t fuseValue;
    std::uint32_t fuseMask;
};

/// What the device library answers, about each device and about the selected one. Device 0 stands
/// for no device in particular. Addresses are bytes and ends are inclusive; a start and end of 0
/// mean that there is no such memory.
///
/// The order of these operations is the binary interface of the library: keep it, and use the
/// reserved ones for additions. No Qt type and no exception crosses it.
class MSP430DevicesInterface {
public:
    virtual int interfaceVersion() const = 0;
    virtual int highestIndex() const = 0;
    /// A device of which no identification is known gets a record that no device information fits.
    virtual void matchRecord(int index, MSP430MatchRecord& record) const = 0;
    virtual bool identificationKnown(int index) const = 0;
    virtual const char* name(int index) const = 0;
    /// An index that isn't one selects device 0.
    virtual void select(int index) = 0;
    /// The index of a name in upper or lower case, or -1.
    virtual int find(const char* name) const = 0;
    virtual bool isXv2() const = 0;
    virtual int reserved8() const = 0;
    virtual int reserved9() const = 0;
    virtual const char* selectedName() const = 0;       // 10
    virtual bool settingRestoresFetchPoint() const = 0; // settings bit 0x1
    virtual bool settingExtraReset() const = 0;         // 0x2
    virtual bool settingPulsesClockControl() const = 0; // 0x4
    virtual bool settingWaitsForFetch() const = 0;      // 0x8
    virtual int reserved15() const = 0;
    /// 0 none, 1 general only, 2 general and module.
    virtual int clockControlKind() const = 0;
    virtual unsigned vectors() const = 0;
    /// 0 without a hardware multiplier.
    virtual std::uint32_t multiplierStart() const = 0;
    virtual unsigned multiplierBits() const = 0;
    virtual std::uint32_t bootLoaderStart() const = 0; // 20
    virtual std::uint32_t bootLoaderEnd() const = 0;
    virtual int memoryTriggers() const = 0;
    /// Also where the flash stub runs.
    virtual std::uint32_t ramStart() const = 0;
    virtual std::uint32_t ramEnd() const = 0;
    /// Used in place of the first RAM where there is one.
    virtual std::uint32_t ram2Start() const = 0;
    virtual std::uint32_t ram2End() const = 0;
    virtual std::uint32_t infoStart() const = 0;
    virtual std::uint32_t infoEnd() const = 0;
    virtual std::uint32_t infoSegmentSize() const = 0;
    virtual std::uint32_t mainStart() const = 0; // 30
    virtual std::uint32_t mainEnd() const = 0;
    /// 4096 marks the devices with the cycle counter and the lock on segment A.
    virtual unsigned deviceClass() const = 0;
    virtual int reserved33() const = 0;
    virtual int registerTriggers() const = 0;
    virtual int combinationTriggers() const = 0;
    virtual std::uint32_t deviceDefaultMCLKCNTRL0() const = 0;
    virtual bool extendedRegisters() const = 0;  // settings bit 0x10
    virtual bool settingExtendedPSA() const = 0; // 0x20
    virtual bool settingFastErase() const = 0;   // 0x40
    virtual int generalClockBits() const = 0;    // 40
    virtual const char* generalClockName(int bit) const = 0;
    virtual int moduleClockBits() const = 0;
    virtual const char* moduleClockName(int bit) const = 0;
    virtual int reserved44() const = 0;
    virtual bool hasStateStorage() const = 0;
    virtual bool hasVariableWatch() const = 0;
    virtual bool hasCycleCounterReaction() const = 0;
    virtual bool hasSequencer() const = 0;
    virtual bool hasRangeComparison() const = 0;
    /// Any power-of-two mask; otherwise masks of 8 and 16 bits only.
    virtual bool allowsAnyMask() const = 0; // 50
    /// The trigger for writes is number 7, otherwise number 3.
    virtual bool writeTriggerIs7() const = 0;
    virtual int reserved52() const = 0;
    virtual int reserved53() const = 0;
    virtual std::uint32_t peripheralStart() const = 0;
    /// Peripherals from here on are accessed by whole words.
    virtual std::uint32_t peripheralWordStart() const = 0;
    virtual std::uint32_t peripheralEnd() const = 0;

protected:
    ~MSP430DevicesInterface() = default;
};

inline constexpr int MSP430DevicesVersion = 1;

extern "C" {
/// What the library exports. The first gives null when it has no memory left.
using AllocateMSP430DevicesFunction = MSP430DevicesInterface* (*)();
using ReleaseMSP430DevicesFunction = void (*)(MSP430DevicesInterface*);
}
