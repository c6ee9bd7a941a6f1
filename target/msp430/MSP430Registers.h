#pragma once

#include "target/TargetRegisterInterface.h"

#include <array>
#include <cstdint>
#include <span>

/// The sixteen registers of an MSP430, as 32-bit values, with a mark on each that has been set.
class MSP430Registers : public TargetRegisterInterface {
public:
    static constexpr unsigned Count = 16;

    /// `extended`: registers are 20 bits wide.
    explicit MSP430Registers(bool extended = false) : m_extended(extended) { }
    /// Copies clear bit 0 of the PC.
    MSP430Registers(const MSP430Registers& other);
    MSP430Registers& operator=(const MSP430Registers& other);
    void copy(std::span<const std::uint32_t, Count> values);

    unsigned numRegisters() override { return Count; }
    QString numberToName(unsigned number) override;
    int nameToNumber(QString name) override;
    unsigned sizeInBytes(unsigned number) override { return number == 0 && m_extended ? 3 : 2; }
    unsigned getValue(unsigned number) override { return number < Count ? m_values[number] : 0; }
    void setValue(unsigned number, unsigned value) override;
    unsigned pcIndex() const override { return 0; }
    unsigned getPC() override { return m_values[0]; }
    unsigned getSP() override { return m_values[1]; }
    void setPC(unsigned value) override { setValue(0, value); }

    bool extended() const { return m_extended; }
    /// One bit a register.
    std::uint32_t dirty() const { return m_dirty; }
    void clearDirty() { m_dirty = 0; }
    /// The values themselves, for an engine that keeps no account of what it changes.
    std::uint32_t* values() { return m_values.data(); }

private:
    std::array<std::uint32_t, Count> m_values{};
    bool m_extended;
    std::uint32_t m_dirty = 0;
};
