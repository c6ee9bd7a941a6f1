#pragma once

#include <cstdint>

/// The hardware multiplier, by offsets in bytes from the start of its registers. The 32-bit modes
/// keep the whole 64-bit product, as the device does. The registers' layout: MSP430x5xx family
/// guide (SLAU208), "32-Bit Hardware Multiplier".
class Multiplier {
public:
    /// `is32Bit`: the multiplier with 32-bit operands and 46 bytes of registers, else 16 bytes.
    explicit Multiplier(bool is32Bit) : m_is32Bit(is32Bit) { }

    unsigned length() const { return m_is32Bit ? 46 : 16; }
    void store(unsigned offset, unsigned value);
    /// 0 for an offset without a register.
    unsigned load(unsigned offset) const;

private:
    void setFirst(unsigned value, unsigned mode);
    void setFirstHigh(unsigned value, unsigned mode);
    void setResultWord(unsigned shift, unsigned value);
    void doit();
    void multiply16Signed();
    void accumulate();
    void accumulate16Signed();
    void multiply32Signed();
    void accumulate64(std::uint64_t product);

    std::uint32_t m_first = 0;
    std::uint32_t m_second = 0;
    std::uint32_t m_mode = 0;
    std::uint64_t m_result = 0;
    std::uint32_t m_sumExtension = 0;
    bool m_is32Bit;
};
