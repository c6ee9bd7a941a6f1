#pragma once

#include "target/SimulatedHMonitor.h"
#include "target/msp430/MSP430InstructionSetSimulator.h"
#include "target/msp430/MSP430MonitorInterface.h"
#include "target/msp430/MSP430Registers.h"
#include "target/msp430/MSP430RunCore.h"
#include "target/msp430/MemoryImage.h"
#include "target/msp430/SimulatedFlash.h"

#include <memory>
#include <string>
#include <vector>

/// The simulated MSP430: memory, registers, instruction engine, interrupts and hardware multiplier.
/// It is its own code and data memory, little-endian in words of two bytes.
class MSP430Monitor final : public SimulatedHMonitor,
                            public MSP430MonitorInterface,
                            public MSP430InstructionSetSimulator,
                            public SimulatedFlash {
public:
    explicit MSP430Monitor(TargetInterfaceHelperFunctions* host = nullptr);
    ~MSP430Monitor() override;

    /// Names of devices, separated by ";", of which the last one in the library's order is taken;
    /// none known means the library's device 0. Read by `connect`, in place of the project's
    /// setting while it isn't empty.
    void setIdentifyString(std::string names) { m_identifyString = std::move(names); }
    /// "16-Bit Multiplier" gives the 16-bit hardware multiplier, any other text the 32-bit one.
    /// Read by `connect`, in place of the project's setting while it isn't empty.
    void setHardwareMultiplier(std::string kind) { m_hardwareMultiplier = std::move(kind); }
    int interruptPollInterval() const;
    /// In cycles, 0 to 1000.
    void setInterruptPollInterval(int cycles);
    /// Fills the whole image, as before a load. Connected only.
    void fillMemory(unsigned char value);
    /// True if the processor is off and nothing here can wake it.
    bool isAsleepForGood() const;

    void connect(bool identify) override;
    void disconnect() override;
    bool isCompatibleWith(const QString& processor) const override;
    void getProperties(PropertyValueList& list) override;
    TargetMemoryInterface* codeMemory() override { return this; }
    TargetMemoryInterface* dataMemory() override { return this; }
    TargetRegisterInterface* registers() override { return &m_registers; }
    using SimulatedHMonitor::reset;
    void reset() override;
    void go() override;
    void step() override;
    int getNumInterrupts() override { return static_cast<int>(m_pending.size()); }
    void getInterruptInformation(unsigned index, unsigned& number, QString& name,
                                 QString& description) override;
    /// Vector 0 is the lowest; taken at the next poll, whether or not interrupts are enabled.
    void raiseInterrupt(int index) override;
    void checkReset() override;
    void checkIRQ() override;
    unsigned singleStep() override;
    bool enableSoftwareBreakpoints() override { return true; }

    unsigned getRegister(int number) override;
    void setRegister(int number, unsigned value) override;
    unsigned readByte(unsigned address) override;
    void writeByte(unsigned address, unsigned value) override;
    unsigned readWord(unsigned address) override;
    void writeWord(unsigned address, unsigned value) override;
    void unsupportedOpcode(unsigned word) override;

    // The debugger's access: no error is reported and no breakpoint matched.
    void pokeBytes(unsigned address, unsigned length, const unsigned char* data) override;
    void peekBytes(unsigned address, unsigned length, unsigned char* data) override;
    void pokeMultUint16(unsigned address, unsigned count, const unsigned short* values) override;
    void peekMultUint16(unsigned address, unsigned count, unsigned short* values) override;

protected:
    unsigned runUnwatched(unsigned passes) override;
    void breakpointsChanged() override;
    void leaveRunUnwatched() override { m_runDeadline = 0; }
    std::vector<std::pair<unsigned, unsigned>> flashRanges() const override;

private:
    using RunCore = MSP430RunCore<MSP430Monitor>;

    void connectDevice();
    void selectDevice();
    void addValidRanges();
    template <bool traced> unsigned execute(unsigned passes);
    unsigned sleep(unsigned passes);
    std::uint64_t nextPoll() const;
    bool nothingPending() const;
    void requireConnection() const;
    bool sleeping()
    {
        return (m_registers.values()[MSP430Register::SR] & MSP430Status::CPUOFF) != 0;
    }
    unsigned wordAtPC();
    void pollPeripherals();
    bool takePending(unsigned& vector);
    void enterInterrupt(unsigned vector);
    unsigned read(unsigned address, unsigned size);
    void write(unsigned address, unsigned size, unsigned value);
    unsigned peek(unsigned address, unsigned size);
    void poke(unsigned address, unsigned size, unsigned value);
    bool byWords(unsigned address) const;

    std::string m_identifyString;
    std::string m_hardwareMultiplier;
    TargetInterfacePropertyValue m_pollIntervalValue;
    std::uint64_t m_pollInterval = 0; ///< as the property says, read when a run begins
    std::uint64_t m_lastPoll = 0;
    std::uint64_t m_lastPeripheralPoll = 0;
    std::uint64_t m_runDeadline = 0; ///< the plain run loop ends at this cycle
    bool m_watchesRegisters = false;
    MSP430Registers m_registers;
    std::unique_ptr<MemoryImage> m_image;
    std::unique_ptr<RunCore> m_core;
    std::vector<unsigned char> m_pending; ///< a flag for each vector
    unsigned m_vectorBase = 0;
};
