#include "target/msp430/Multiplier.h"

namespace {

constexpr std::uint32_t allOnes = 0xFFFF;

std::int32_t signed16(std::uint32_t value) { return static_cast<std::int16_t>(value); }

std::uint32_t withHighWord(std::uint32_t number, unsigned value)
{
    return (number & 0xFFFF) | (value & 0xFFFF) << 16;
}

} // namespace

void Multiplier::store(unsigned offset, unsigned value)
{
    switch (offset) {
    case 0:
    case 16: return setFirst(value, 0);
    case 2:
    case 20: return setFirst(value, 1);
    case 4:
    case 24: return setFirst(value, 2);
    case 6:
    case 28: return setFirst(value, 3);
    case 18: return setFirstHigh(value, 4);
    case 22: return setFirstHigh(value, 5);
    case 26: return setFirstHigh(value, 6);
    case 30: return setFirstHigh(value, 7);
    case 8: m_second = value; return doit();
    case 10: return setResultWord(0, value);
    case 12: return setResultWord(16, value);
    case 14: m_sumExtension = value; return;
    case 32: m_second = value; return;
    case 34: m_second = withHighWord(m_second, value); return doit();
    default: return;
    }
}

unsigned Multiplier::load(unsigned offset) const
{
    switch (offset) {
    case 0:
    case 2:
    case 4:
    case 6: return m_first & 0xFFFF;
    case 16:
    case 20:
    case 24:
    case 28: return m_first;
    case 18:
    case 22:
    case 26:
    case 30: return m_first >> 16;
    case 8:
    case 32: return m_second & 0xFFFF;
    case 34: return m_second >> 16;
    case 10:
    case 36: return m_result & 0xFFFF;
    case 12:
    case 38: return m_result >> 16 & 0xFFFF;
    case 14: return m_sumExtension;
    case 40: return m_result >> 32 & 0xFFFF;
    case 42: return static_cast<unsigned>(m_result >> 48);
    default: return 0;
    }
}

void Multiplier::setFirst(unsigned value, unsigned mode)
{
    m_first = value;
    m_mode = mode;
}

void Multiplier::setFirstHigh(unsigned value, unsigned mode)
{
    m_first = withHighWord(m_first, value);
    m_mode = mode;
}

void Multiplier::setResultWord(unsigned shift, unsigned value)
{
    const std::uint32_t low = static_cast<std::uint32_t>(m_result);
    m_result = (low & ~(0xFFFFu << shift)) | (value & 0xFFFF) << shift;
}

void Multiplier::doit()
{
    const std::uint64_t product = std::uint64_t{m_first} * m_second;
    switch (m_mode) {
    case 1: return multiply16Signed();
    case 2: return accumulate();
    case 3: return accumulate16Signed();
    case 5: return multiply32Signed();
    case 6: return accumulate64(product);
    case 7:
        return accumulate64(
            static_cast<std::uint64_t>(std::int64_t{static_cast<std::int32_t>(m_first)}
                                       * static_cast<std::int32_t>(m_second)));
    default: m_result = product; m_sumExtension = 0;
    }
}

void Multiplier::multiply16Signed()
{
    const auto product = static_cast<std::uint32_t>(signed16(m_first) * signed16(m_second));
    m_result = product;
    m_sumExtension = (product >> 31) != 0 ? allOnes : 0;
}

void Multiplier::accumulate()
{
    const std::uint64_t sum = (m_result & 0xFFFFFFFF) + std::uint64_t{m_first} * m_second;
    m_result = sum & 0xFFFFFFFF;
    m_sumExtension = sum > 0xFFFFFFFF ? 1 : 0;
}

void Multiplier::accumulate16Signed()
{
    const auto product = static_cast<std::uint32_t>(signed16(m_first) * signed16(m_second));
    const std::uint32_t sum = static_cast<std::uint32_t>(m_result) + product;
    m_result = sum;
    m_sumExtension = (sum >> 31) != 0 ? allOnes : 0;
}

void Multiplier::multiply32Signed()
{
    const std::int64_t product =
        std::int64_t{static_cast<std::int32_t>(m_first)} * static_cast<std::int32_t>(m_second);
    m_result = static_cast<std::uint64_t>(product);
    m_sumExtension = product < 0 ? allOnes : 0;
}

void Multiplier::accumulate64(std::uint64_t product)
{
    m_result += product;
    m_sumExtension = m_result < product ? 1 : 0;
}
