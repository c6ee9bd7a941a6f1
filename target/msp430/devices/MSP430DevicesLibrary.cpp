// The device library: a shared object of its own, so that devices can be added to an installation.

#include "target/msp430/devices/MSP430DevicesInterface.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <new>
#include <string_view>

namespace {

/// Resources of the kinds of emulation logic; sources in device_facts.py.
struct MSP430Emulation {
    int memoryTriggers;
    int registerTriggers;
    int combinationTriggers;
    bool ranges;
    bool anyMask;
    bool sequencer;
    bool stateStorage;
    bool cycleReaction;
    bool wideTriggers; ///< sixteen kinds of access, otherwise four

    static const MSP430Emulation Low, Medium, High, ExtraSmall, Small, Large;
};

constexpr MSP430Emulation MSP430Emulation::Low{2, 0, 2, false, false, false, false, false, false};
constexpr MSP430Emulation MSP430Emulation::Medium{3, 0, 3, true, false, false, false, false, false};
constexpr MSP430Emulation MSP430Emulation::High{8, 2, 8, true, true, true, true, false, true};
constexpr MSP430Emulation MSP430Emulation::ExtraSmall{2,     0,     2,     false, false,
                                                      false, false, false, true};
constexpr MSP430Emulation MSP430Emulation::Small{3, 1, 4, true, true, false, false, true, true};
constexpr MSP430Emulation MSP430Emulation::Large{8, 2, 10, true, true, true, true, true, true};

/// A byte of the device information is never this, so that nothing fits the record.
constexpr std::uint32_t Never = 0xFFFFFFFE;
constexpr MSP430MatchRecord NoMatch{{Never, Never, Never, Never, Never, Never, Never}, Never, 0};

struct MSP430Device {
    const char* name; ///< upper case, as "MSP430F149"
    std::uint32_t peripheralStart, peripheralWordStart, peripheralEnd;
    std::uint32_t ramStart, ramEnd;
    std::uint32_t ram2Start, ram2End;
    std::uint32_t infoStart, infoEnd;
    std::uint32_t infoSegmentSize;
    std::uint32_t bslStart, bslEnd;
    std::uint32_t mainStart, mainEnd; ///< with the vectors and the memory above 64 KB
    std::uint32_t vectors;            ///< 16, 32 or 64 two-byte vectors, which end at 0xFFFF
    std::uint32_t multiplierStart;
    std::uint32_t multiplierBits;
    bool extendedCore; ///< 20-bit registers and addresses
    bool xv2;
    bool fastErase;
    int clockControl;
    const MSP430Emulation& emulation;
    MSP430MatchRecord match;
};

constexpr MSP430Device devices[] = {
    {"generic",
     0,
     0x100,
     0x1FF,
     0x200,
     0xFFFF,
     0,
     0,
     0,
     0,
     0x80,
     0,
     0,
     0x10000,
     0xFFFFF,
     16,
     0x130,
     16,
     true,
     false,
     false,
     0,
     MSP430Emulation::Low,
     NoMatch},
#include "MSP430DeviceTable.inc"
};

constexpr int deviceCount = static_cast<int>(std::size(devices));
constexpr unsigned classWithCycleCounter = 4096;

bool equalIgnoringCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return std::toupper(static_cast<unsigned char>(x))
            == std::toupper(static_cast<unsigned char>(y));
    });
}

const MSP430Device& at(int index) { return devices[index >= 0 && index < deviceCount ? index : 0]; }

class MSP430DevicesLibrary final : public MSP430DevicesInterface {
public:
    int interfaceVersion() const override { return MSP430DevicesVersion; }
    int highestIndex() const override { return deviceCount - 1; }
    void matchRecord(int index, MSP430MatchRecord& record) const override
    {
        record = at(index).match;
    }
    bool identificationKnown(int index) const override { return at(index).match.bytes[0] != Never; }
    const char* name(int index) const override { return at(index).name; }
    void select(int index) override { m_selected = &at(index); }
    int find(const char* name) const override
    {
        for (int i = 0; i < deviceCount; ++i)
            if (equalIgnoringCase(devices[i].name, name))
                return i;
        return -1;
    }
    bool isXv2() const override { return m_selected->xv2; }
    const char* selectedName() const override { return m_selected->name; }

    // Which devices need these is not established from public documents; none is taken to.
    bool settingRestoresFetchPoint() const override { return false; }
    bool settingExtraReset() const override { return false; }
    bool settingPulsesClockControl() const override { return false; }
    bool settingWaitsForFetch() const override { return false; }

    int clockControlKind() const override { return m_selected->clockControl; }
    unsigned vectors() const override { return m_selected->vectors; }
    std::uint32_t multiplierStart() const override { return m_selected->multiplierStart; }
    unsigned multiplierBits() const override { return m_selected->multiplierBits; }
    std::uint32_t bootLoaderStart() const override { return m_selected->bslStart; }
    std::uint32_t bootLoaderEnd() const override { return m_selected->bslEnd; }
    int memoryTriggers() const override { return m_selected->emulation.memoryTriggers; }
    std::uint32_t ramStart() const override { return m_selected->ramStart; }
    std::uint32_t ramEnd() const override { return m_selected->ramEnd; }
    std::uint32_t ram2Start() const override { return m_selected->ram2Start; }
    std::uint32_t ram2End() const override { return m_selected->ram2End; }
    std::uint32_t infoStart() const override { return m_selected->infoStart; }
    std::uint32_t infoEnd() const override { return m_selected->infoEnd; }
    std::uint32_t infoSegmentSize() const override { return m_selected->infoSegmentSize; }
    std::uint32_t mainStart() const override { return m_selected->mainStart; }
    std::uint32_t mainEnd() const override { return m_selected->mainEnd; }
    unsigned deviceClass() const override { return m_selected->xv2 ? classWithCycleCounter : 0; }
    int registerTriggers() const override { return m_selected->emulation.registerTriggers; }
    int combinationTriggers() const override { return m_selected->emulation.combinationTriggers; }
    // Not established: all clocks run on while the processor is stopped.
    std::uint32_t deviceDefaultMCLKCNTRL0() const override { return 0; }
    bool extendedRegisters() const override { return m_selected->extendedCore; }
    // SLAU320: the 20-bit sequences of the PSA check are those of the MSP430X.
    bool settingExtendedPSA() const override { return m_selected->extendedCore; }
    bool settingFastErase() const override { return m_selected->fastErase; }
    // Which bit stops which clock is not established: none is offered.
    int generalClockBits() const override { return 0; }
    const char* generalClockName(int) const override { return ""; }
    int moduleClockBits() const override { return 0; }
    const char* moduleClockName(int) const override { return ""; }
    bool hasStateStorage() const override { return m_selected->emulation.stateStorage; }
    // Not established for any device.
    bool hasVariableWatch() const override { return false; }
    bool hasCycleCounterReaction() const override { return m_selected->emulation.cycleReaction; }
    bool hasSequencer() const override { return m_selected->emulation.sequencer; }
    bool hasRangeComparison() const override { return m_selected->emulation.ranges; }
    bool allowsAnyMask() const override { return m_selected->emulation.anyMask; }
    bool writeTriggerIs7() const override { return m_selected->emulation.wideTriggers; }
    std::uint32_t peripheralStart() const override { return m_selected->peripheralStart; }
    std::uint32_t peripheralWordStart() const override { return m_selected->peripheralWordStart; }
    std::uint32_t peripheralEnd() const override { return m_selected->peripheralEnd; }

    int reserved8() const override { return 0; }
    int reserved9() const override { return 0; }
    int reserved15() const override { return 0; }
    int reserved33() const override { return 0; }
    int reserved44() const override { return 0; }
    int reserved52() const override { return 0; }
    int reserved53() const override { return 0; }

private:
    const MSP430Device* m_selected = &devices[0];
};

} // namespace

extern "C" {

[[gnu::visibility("default")]] MSP430DevicesInterface* AllocateMSP430Devices()
{
    return new (std::nothrow) MSP430DevicesLibrary;
}

[[gnu::visibility("default")]] void ReleaseMSP430Devices(MSP430DevicesInterface* devices)
{
    delete static_cast<MSP430DevicesLibrary*>(devices);
}
}
