#include "target/msp430/MSP430Registers.h"

#include <algorithm>

namespace {

constexpr std::array<const char*, MSP430Registers::Count> names = {
    "PC", "SP", "SR",  "R3",  "R4",  "R5",  "R6",  "R7",
    "R8", "R9", "R10", "R11", "R12", "R13", "R14", "R15"};
constexpr std::array<const char*, 3> numberedNames = {"R0", "R1", "R2"};

template <class Table> int indexOf(const Table& table, const QString& name)
{
    const auto it = std::find_if(table.begin(), table.end(),
                                 [&](const char* entry) { return name == QLatin1String(entry); });
    return it == table.end() ? -1 : static_cast<int>(it - table.begin());
}

} // namespace

MSP430Registers::MSP430Registers(const MSP430Registers& other)
    : TargetRegisterInterface(other),
      m_values(other.m_values),
      m_extended(other.m_extended),
      m_dirty(other.m_dirty)
{
    m_values[0] &= ~1u;
}

MSP430Registers& MSP430Registers::operator=(const MSP430Registers& other)
{
    m_extended = other.m_extended;
    m_dirty = other.m_dirty;
    copy(other.m_values);
    return *this;
}

void MSP430Registers::copy(std::span<const std::uint32_t, Count> values)
{
    std::copy(values.begin(), values.end(), m_values.begin());
    m_values[0] &= ~1u;
}

QString MSP430Registers::numberToName(unsigned number)
{
    return number < Count ? QString::fromLatin1(names[number]) : QString();
}

int MSP430Registers::nameToNumber(QString name)
{
    name = name.toUpper();
    const int number = indexOf(names, name);
    return number >= 0 ? number : indexOf(numberedNames, name);
}

void MSP430Registers::setValue(unsigned number, unsigned value)
{
    if (number >= Count)
        return;
    m_values[number] = value;
    m_dirty |= 1u << number;
}
