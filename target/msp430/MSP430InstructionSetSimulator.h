#pragma once

#include "target/msp430/MSP430Core.h"

/// Executes one MSP430 or MSP430X instruction at a time over registers and memory that the owner
/// holds: registers 0 PC, 1 SP, 2 SR, 3 to 15 as 32-bit values, addresses in bytes. Faults of
/// memory are the owner's business; the engine carries on with whatever a read returned.
class MSP430InstructionSetSimulator : public MSP430Core<MSP430InstructionSetSimulator> {
public:
    virtual ~MSP430InstructionSetSimulator();
    virtual unsigned getRegister(int number) = 0;
    virtual void setRegister(int number, unsigned value) = 0;
    virtual unsigned readByte(unsigned address) = 0;
    virtual void writeByte(unsigned address, unsigned value) = 0;
    virtual unsigned readWord(unsigned address) = 0;
    virtual void writeWord(unsigned address, unsigned value) = 0;
    /// The instruction word has no meaning; the PC is past it.
    virtual void unsupportedOpcode(unsigned word) = 0;
    /// Pushes the 20-bit PC and goes to `target`; overridden by owners that follow calls.
    virtual void calla(unsigned target);
    /// Stores the PC at the SP, which the caller has lowered, and goes to `target`.
    virtual void call(unsigned target);

    using MSP430Core::loadPC;
    using MSP430Core::storePC;

    void setExtendedCore(bool extended) { m_extendedCore = extended; }
    bool extendedCore() const { return m_extendedCore; }
};

extern template class MSP430Core<MSP430InstructionSetSimulator>;
