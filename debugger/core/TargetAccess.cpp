// Memory, registers, trace and counts of the target.

#include "debugger/core/TOBFDebugger.h"
#include "debugger/expressions/ParserException.h"
#include "target/HMonitor.h"

using namespace Qt::Literals::StringLiterals;

TargetMemoryInterface* TOBFDebugger::dataMemory() const
{
    return m_target ? m_target->dataMemory() : nullptr;
}

TargetMemoryInterface* TOBFDebugger::codeMemory() const
{
    return m_target ? m_target->codeMemory() : nullptr;
}

// What the target doesn't have reads as it is in the buffer, and isn't written.

void TOBFDebugger::memoryRead(TargetMemoryInterface* memory, unsigned address, unsigned size,
                              unsigned char* buffer)
{
    if (memory && memory->memoryExists(address, size))
        memory->peekBytes(address, size, buffer);
}

void TOBFDebugger::memoryWrite(TargetMemoryInterface* memory, unsigned address, unsigned size,
                               const unsigned char* buffer)
{
    if (memory)
        memory->pokeBytes(address, size, buffer);
}

void TOBFDebugger::readMemory(unsigned address, unsigned size, unsigned char* buffer)
{
    memoryRead(dataMemory(), address, size, buffer);
}

void TOBFDebugger::writeMemory(unsigned address, unsigned size, const unsigned char* buffer)
{
    memoryWrite(dataMemory(), address, size, buffer);
}

void TOBFDebugger::readCodeMemory(unsigned address, unsigned size, unsigned char* buffer)
{
    memoryRead(codeMemory(), address, size, buffer);
}

void TOBFDebugger::writeCodeMemory(unsigned address, unsigned size, const unsigned char* buffer)
{
    memoryWrite(codeMemory(), address, size, buffer);
}

void TOBFDebugger::readEepromMemory(unsigned address, unsigned size, unsigned char* buffer)
{
    memoryRead(m_target ? m_target->eeMemory() : nullptr, address, size, buffer);
}

void TOBFDebugger::writeEepromMemory(unsigned address, unsigned size, const unsigned char* buffer)
{
    memoryWrite(m_target ? m_target->eeMemory() : nullptr, address, size, buffer);
}

void TOBFDebugger::readPeripheralMemory(unsigned address, unsigned size, unsigned char* buffer)
{
    memoryRead(dataMemory(), address, size, buffer);
}

void TOBFDebugger::writePeripheralMemory(unsigned address, unsigned size,
                                         const unsigned char* buffer)
{
    memoryWrite(dataMemory(), address, size, buffer);
}

unsigned long long TOBFDebugger::getRegister(unsigned number)
{
    return m_currentFrame ? m_currentFrame->registers->getValue(number) : 0;
}

unsigned TOBFDebugger::getRegisterLength(unsigned number)
{
    TargetRegisterInterface* const registers = m_currentFrame ? m_currentFrame->registers
        : m_monitor                                           ? m_monitor->registers()
                                                              : nullptr;
    return registers ? registers->sizeInBytes(number) : static_cast<unsigned>(getWordSizeInBytes());
}

void TOBFDebugger::setRegister(unsigned number, unsigned long long value)
{
    if (!m_currentFrame || !m_currentFrame->live)
        throw ParserException("cannot change the register value in this context");
    m_currentFrame->registers->setValue(number, static_cast<unsigned>(value));
}

// Memory by the name of its space

TargetMemoryInterface* TOBFDebugger::segment(const QString& space)
{
    return m_target ? getMemorySegment(space) : nullptr;
}

unsigned TOBFDebugger::getMemoryRange(const QString& space, unsigned address)
{
    if (TargetMemoryInterface* const memory = segment(space))
        for (const AddressRange& range : memory->addressRanges())
            if (range.contains(address, address))
                return range.end - address + 1;
    return 0;
}

void TOBFDebugger::dumpMemory(const QString& space, unsigned address, unsigned size, unsigned unit,
                              bool byUnits, MemoryDump* dump)
{
    TargetMemoryInterface* const memory = segment(space);
    if (!memory || (unit != 1 && unit != 2 && unit != 4))
        return;
    std::vector<unsigned char> bytes(size);
    if (!byUnits)
        memory->peekBytes(address, size, bytes.data());
    for (unsigned at = 0; at + unit <= size; at += unit) {
        unsigned value = 0;
        for (unsigned i = 0; !byUnits && i < unit; ++i)
            value |= unsigned(bytes[at + i]) << 8 * i;
        dump->addEntry(address + at,
                       byUnits ? static_cast<unsigned>(memory->peekNumber(address + at, unit))
                               : value);
    }
}

void TOBFDebugger::setMemory(const QString& space, unsigned address, unsigned value, unsigned unit)
{
    if (TargetMemoryInterface* const memory = segment(space))
        memory->pokeNumber(address, unit, value);
}

void TOBFDebugger::getMemory(const QString& space, unsigned address, unsigned size,
                             unsigned char* bytes)
{
    if (TargetMemoryInterface* const memory = segment(space))
        memory->peekBytes(address, size, bytes);
}

void TOBFDebugger::setMemory(const QString& space, unsigned address, unsigned size,
                             const unsigned char* bytes)
{
    if (TargetMemoryInterface* const memory = segment(space))
        memory->pokeBytes(address, size, bytes);
}

// Counts and trace

void TOBFDebugger::resetExecutionCount()
{
    if (m_monitor)
        m_monitor->resetExecutionCount();
}

void TOBFDebugger::setExecutionCountEnabled(bool enabled)
{
    if (m_monitor)
        m_monitor->setExecutionCountEnabled(enabled);
}

bool TOBFDebugger::getExecutionCountEnabled()
{
    return m_monitor && m_monitor->getExecutionCountEnabled();
}

void TOBFDebugger::iterateExecutionCount()
{
    if (m_monitor)
        m_monitor->iterateExecutionCount();
}

bool TOBFDebugger::getExecutionCount(unsigned& address, unsigned& count, unsigned& extra,
                                     QString& text)
{
    if (!m_monitor || !m_monitor->getNextExecutionCount(address, count, extra))
        return false;
    text = disassemble(address).text;
    return true;
}

void TOBFDebugger::resetTrace()
{
    if (m_monitor)
        m_monitor->resetTrace();
}

void TOBFDebugger::setTraceEnabled(bool enabled)
{
    if (m_monitor)
        m_monitor->setTraceEnabled(enabled);
}

bool TOBFDebugger::getTraceEnabled() { return m_monitor && m_monitor->getTraceEnabled(); }

void TOBFDebugger::iterateTrace()
{
    if (m_monitor)
        m_monitor->iterateTrace();
}

bool TOBFDebugger::getTrace(unsigned& address, unsigned& cycles, QString& text)
{
    unsigned data = 0;
    if (!m_monitor || !m_monitor->getNextTrace(address, data, cycles))
        return false;
    text = disassemble(address).text;
    return true;
}
