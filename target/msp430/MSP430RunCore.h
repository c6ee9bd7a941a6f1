#pragma once

#include "target/msp430/MSP430Core.h"
#include "target/msp430/MemoryImage.h"

/// The instruction engine bound to plain memory and registers. An access that isn't an aligned one
/// of a plain page goes to `Monitor`, whose virtual operations know the peripherals and the errors.
template <class Monitor> class MSP430RunCore : public MSP430Core<MSP430RunCore<Monitor>> {
public:
    /// All three outlive this object.
    MSP430RunCore(Monitor& monitor, MemoryImage& image, std::uint32_t* registers, bool extended)
        : m_monitor(monitor),
          m_image(image),
          m_registers(registers)
    {
        this->m_extendedCore = extended;
    }

    unsigned getRegister(int number) const { return m_registers[number]; }
    void setRegister(int number, unsigned value) { m_registers[number] = value; }

    unsigned readByte(unsigned address)
    {
        return m_image.isPlain(address) ? m_image.byte(address) : m_monitor.readByte(address);
    }
    void writeByte(unsigned address, unsigned value)
    {
        if (m_image.isPlain(address))
            m_image.setByte(address, value);
        else
            m_monitor.writeByte(address, value);
    }
    unsigned readWord(unsigned address)
    {
        return isPlainWord(address) ? m_image.word(address) : m_monitor.readWord(address);
    }
    void writeWord(unsigned address, unsigned value)
    {
        if (isPlainWord(address))
            m_image.setWord(address, value);
        else
            m_monitor.writeWord(address, value);
    }
    void unsupportedOpcode(unsigned word) { m_monitor.unsupportedOpcode(word); }
    void call(unsigned target) { this->enter(target); }
    void calla(unsigned target) { this->enterA(target); }

    bool isPlainWord(unsigned address) const
    {
        return (address & 1) == 0 && m_image.isPlain(address);
    }

private:
    Monitor& m_monitor;
    MemoryImage& m_image;
    std::uint32_t* m_registers;
};
