#include "debugger/msp430/MSP430NextInstructionCalculator.h"

#include "target/TargetMemoryInterface.h"

namespace {

/// Peripherals lie below (MSP430x1xx Family User's Guide, SLAU049, 1.4).
constexpr unsigned FirstMemoryAddress = 0x200;

} // namespace

MSP430NextInstructionCalculator::MSP430NextInstructionCalculator(const MSP430Registers& registers,
                                                                 TargetMemoryInterface* memory,
                                                                 bool over)
    : m_registers(registers),
      m_memory(memory),
      m_over(over)
{
    setExtendedCore(registers.extended());
}

unsigned MSP430NextInstructionCalculator::run(unsigned start, unsigned length)
{
    constexpr int MostInstructions = 100;
    unsigned pc = m_registers.getPC();
    for (int count = 0; count < MostInstructions; ++count) {
        const unsigned last = pc;
        singleStep();
        pc = m_registers.getPC();
        if (m_stop || pc == last || pc < start || pc - start >= length)
            break;
    }
    return pc;
}

unsigned MSP430NextInstructionCalculator::getRegister(int number)
{
    return m_registers.getValue(static_cast<unsigned>(number));
}

void MSP430NextInstructionCalculator::setRegister(int number, unsigned value)
{
    m_registers.setValue(static_cast<unsigned>(number), value);
}

bool MSP430NextInstructionCalculator::isPeripheral(unsigned address)
{
    m_stop = m_stop || address < FirstMemoryAddress;
    return address < FirstMemoryAddress;
}

unsigned MSP430NextInstructionCalculator::readByte(unsigned address)
{
    if (isPeripheral(address))
        return 0;
    const auto written = m_written.find(address);
    return written != m_written.end() ? written->second : m_memory->peekByte(address);
}

unsigned MSP430NextInstructionCalculator::readWord(unsigned address)
{
    if (isPeripheral(address))
        return 0;
    const auto low = m_written.find(address);
    if (low == m_written.end())
        return m_memory->peekUint16(address);
    const auto high = m_written.find(address + 1);
    return low->second | (high != m_written.end() ? unsigned(high->second) << 8 : 0);
}

void MSP430NextInstructionCalculator::writeByte(unsigned address, unsigned value)
{
    if (!isPeripheral(address))
        m_written[address] = static_cast<unsigned char>(value);
}

void MSP430NextInstructionCalculator::writeWord(unsigned address, unsigned value)
{
    if (isPeripheral(address))
        return;
    m_written[address] = static_cast<unsigned char>(value);
    m_written[address + 1] = static_cast<unsigned char>(value >> 8);
}

void MSP430NextInstructionCalculator::call(unsigned target)
{
    if (m_over)
        m_stop = true;
    else
        MSP430InstructionSetSimulator::call(target);
}

void MSP430NextInstructionCalculator::calla(unsigned target)
{
    if (m_over)
        m_stop = true;
    else
        MSP430InstructionSetSimulator::calla(target);
}
