#include "target/SimulatorErrors.h"

#include <cstring>

namespace {

constexpr const char* texts[] = {
    "Unsupported opcode",
    "Address outside memory range on read",
    "Address outside memory range on write",
    "Address outsize memory range on instruction fetch",
    "Uninitialised memory read",
    "Misc error",
    "Unaligned access on word read",
    "Unaligned access on word write",
};

} // namespace

const char* SimulatorErrors::text(int number)
{
    return number >= 0 && number < None ? texts[number] : "Invalid Error";
}

SimulatorErrors::Number SimulatorErrors::numberOf(const char* text)
{
    for (int i = 0; i < None; ++i)
        if (std::strcmp(texts[i], text) == 0)
            return static_cast<Number>(i);
    return Misc;
}

void SimulatorErrors::setEnabled(Number number, bool on)
{
    m_enabled = on ? m_enabled | 1u << number : m_enabled & ~(1u << number);
    m_mustStop = enabled(m_current);
}

void SimulatorErrors::raise(Number number, std::uint32_t address)
{
    m_current = number;
    m_currentAddress = address;
    m_mustStop = enabled(number);
}

void SimulatorErrors::stopWithCurrent()
{
    m_last = m_current;
    m_lastAddress = m_currentAddress;
}
