#pragma once

#include "target/msp430/MSP430InstructionSetSimulator.h"
#include "target/msp430/MSP430Registers.h"

#include <unordered_map>

class TargetMemoryInterface;

/// Where execution goes next, found by a dry run: the instructions are executed on a copy of the
/// registers, and what they write is kept beside the target's memory. Nothing reaches the target,
/// and no peripheral is read.
class MSP430NextInstructionCalculator : public MSP430InstructionSetSimulator {
public:
    /// With `over`, a call ends the run behind it. The memory must outlive this object.
    MSP430NextInstructionCalculator(const MSP430Registers& registers, TargetMemoryInterface* memory,
                                    bool over);

    /// Executes from the PC until it leaves `length` bytes from `start` on, at least one and at
    /// most a hundred instructions. A jump to itself and an access below 512 end the run too. Gives
    /// the PC reached.
    unsigned run(unsigned start, unsigned length);

    unsigned getRegister(int number) override;
    void setRegister(int number, unsigned value) override;
    unsigned readByte(unsigned address) override;
    void writeByte(unsigned address, unsigned value) override;
    unsigned readWord(unsigned address) override;
    void writeWord(unsigned address, unsigned value) override;
    void unsupportedOpcode(unsigned) override { }
    void call(unsigned target) override;
    void calla(unsigned target) override;

private:
    bool isPeripheral(unsigned address);

    MSP430Registers m_registers;
    TargetMemoryInterface* m_memory;
    std::unordered_map<unsigned, unsigned char> m_written;
    bool m_over;
    bool m_stop = false;
};
