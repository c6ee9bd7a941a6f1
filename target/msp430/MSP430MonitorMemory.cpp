// Memory and register access of the simulated MSP430: the program's, which is checked and watched,
// and the debugger's, which is neither.
#include "target/msp430/MSP430Monitor.h"

#include <algorithm>

unsigned MSP430Monitor::getRegister(int number)
{
    const unsigned value = m_registers.values()[number];
    m_matcher.matchRegister(static_cast<std::uint32_t>(number), 2, value, true);
    return value;
}

void MSP430Monitor::setRegister(int number, unsigned value)
{
    m_registers.setValue(static_cast<unsigned>(number), value);
    m_matcher.matchRegister(static_cast<std::uint32_t>(number), 2, value, false);
}

void MSP430Monitor::unsupportedOpcode(unsigned word)
{
    m_errors.raise(SimulatorErrors::UnsupportedOpcode, word);
}

unsigned MSP430Monitor::readByte(unsigned address) { return read(address, 1); }

void MSP430Monitor::writeByte(unsigned address, unsigned value) { write(address, 1, value & 0xFF); }

unsigned MSP430Monitor::readWord(unsigned address)
{
    if ((address & 1) == 0)
        return read(address, 2);
    m_errors.raise(SimulatorErrors::UnalignedRead, address);
    return 0;
}

void MSP430Monitor::writeWord(unsigned address, unsigned value)
{
    if ((address & 1) == 0)
        write(address, 2, value & 0xFFFF);
    else
        m_errors.raise(SimulatorErrors::UnalignedWrite, address);
}

unsigned MSP430Monitor::read(unsigned address, unsigned size)
{
    if (!m_image->isOrdinary(address) && !memoryExists(address, size)) {
        m_errors.raise(SimulatorErrors::ReadOutside, address);
        return 0;
    }
    const unsigned value = m_image->load(address, size, false, m_peripherals.get());
    if (m_image->isPeripheral(address))
        leaveRunUnwatched();
    m_matcher.matchData(address, size, value, true);
    return value;
}

void MSP430Monitor::write(unsigned address, unsigned size, unsigned value)
{
    if (!m_image->isOrdinary(address) && !memoryExists(address, size)) {
        m_errors.raise(SimulatorErrors::WriteOutside, address);
        return;
    }
    m_image->store(address, size, value, m_peripherals.get());
    if (m_image->isPeripheral(address))
        leaveRunUnwatched();
    m_matcher.matchData(address, size, value, false);
}

unsigned MSP430Monitor::peek(unsigned address, unsigned size)
{
    return memoryExists(address, size) ? m_image->load(address, size, true, m_peripherals.get())
                                       : 0;
}

void MSP430Monitor::poke(unsigned address, unsigned size, unsigned value)
{
    if (memoryExists(address, size))
        m_image->store(address, size, value, m_peripherals.get());
}

bool MSP430Monitor::byWords(unsigned address) const
{
    return address >= m_image->peripheralWordStart() && address <= m_image->peripheralEnd();
}

void MSP430Monitor::peekBytes(unsigned address, unsigned length, unsigned char* data)
{
    requireConnection();
    while (length > 0 && address <= m_image->peripheralEnd()) {
        unsigned size = 1;
        if (byWords(address)) {
            const unsigned word = peek(address & ~1u, 2);
            size = std::min((address & 1) != 0 ? 1u : 2u, length);
            data[0] = static_cast<unsigned char>((address & 1) != 0 ? word >> 8 : word);
            if (size == 2)
                data[1] = static_cast<unsigned char>(word >> 8);
        } else {
            data[0] = static_cast<unsigned char>(peek(address, 1));
        }
        address += size;
        data += size;
        length -= size;
    }
    const unsigned there =
        address < MemoryImage::Size ? std::min(length, MemoryImage::Size - address) : 0;
    if (there > 0)
        std::copy_n(m_image->bytes() + address, there, data);
    std::fill_n(data + there, length - there, static_cast<unsigned char>(0));
}

void MSP430Monitor::pokeBytes(unsigned address, unsigned length, const unsigned char* data)
{
    requireConnection();
    while (length > 0 && address <= m_image->peripheralEnd()) {
        const unsigned size = byWords(address) && (address & 1) == 0 && length >= 2 ? 2 : 1;
        poke(address, size, size == 2 ? data[0] | static_cast<unsigned>(data[1]) << 8 : data[0]);
        address += size;
        data += size;
        length -= size;
    }
    if (address < MemoryImage::Size)
        std::copy_n(data, std::min(length, MemoryImage::Size - address),
                    m_image->bytes() + address);
}

void MSP430Monitor::pokeMultUint16(unsigned address, unsigned count, const unsigned short* values)
{
    requireConnection();
    for (unsigned i = 0; i < count; ++i, address += 2)
        if ((address & 1) == 0)
            poke(address, 2, values[i]);
}

void MSP430Monitor::peekMultUint16(unsigned address, unsigned count, unsigned short* values)
{
    requireConnection();
    for (unsigned i = 0; i < count; ++i, address += 2)
        values[i] = static_cast<unsigned short>((address & 1) == 0 ? peek(address, 2) : 0);
}
