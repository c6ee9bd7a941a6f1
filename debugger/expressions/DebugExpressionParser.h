#pragma once

#include "debugger/expressions/ExpressionParser.h"
#include "debugger/expressions/MarkerType.h"
#include "debugger/expressions/MemoryBlock.h"

#include <memory>
#include <vector>

/// Expressions over the memory and the registers of a target, which the debugger supplies.
/// Addresses and sizes count bytes. A read that the target refuses may leave the buffer as it is:
/// zeros.
class DebugExpressionParser : public ExpressionParser {
public:
    using ExpressionParser::ExpressionParser;
    using ExpressionParser::getRegister;

    /// The floating value of `size` bytes (4 or 8) at `offset` of the memory buffer.
    virtual double getFloat(int size, unsigned offset = 0);
    virtual void putFloat(double value, int size, unsigned offset = 0);

    virtual void readMemory(unsigned address, unsigned size, unsigned char* buffer) = 0;
    virtual void writeMemory(unsigned address, unsigned size, const unsigned char* buffer) = 0;
    virtual void readCodeMemory(unsigned address, unsigned size, unsigned char* buffer) = 0;
    virtual void writeCodeMemory(unsigned address, unsigned size, const unsigned char* buffer) = 0;
    virtual void readEepromMemory(unsigned address, unsigned size, unsigned char* buffer) = 0;
    virtual void writeEepromMemory(unsigned address, unsigned size,
                                   const unsigned char* buffer) = 0;
    virtual void readPeripheralMemory(unsigned address, unsigned size, unsigned char* buffer) = 0;
    virtual void writePeripheralMemory(unsigned address, unsigned size,
                                       const unsigned char* buffer) = 0;

    /// Registers of the frame in which expressions are read.
    virtual unsigned long long getRegister(unsigned number) = 0;
    /// Bytes.
    virtual unsigned getRegisterLength(unsigned number) = 0;
    virtual void setRegister(unsigned number, unsigned long long value) = 0;
    /// The register that goes on with a value too large for one.
    virtual unsigned nextRegisterNumber(unsigned number) { return number + 1; }

protected:
    void pushBuffer(std::unique_ptr<MemoryBlock> block) { m_buffers.push_back(std::move(block)); }
    void popBuffer() { m_buffers.pop_back(); }
    /// The innermost one; there must be one.
    MemoryBlock& buffer() { return *m_buffers.back(); }

    /// An unsigned number of up to 8 bytes of the buffer, in the target's order.
    quint64 getNumber(unsigned offset, unsigned size);
    void putNumber(quint64 value, unsigned offset, unsigned size);

    void read(DebugMarkerType::LocationKind kind, unsigned address, unsigned size,
              unsigned char* buffer);
    void write(DebugMarkerType::LocationKind kind, unsigned address, unsigned size,
               const unsigned char* buffer);

private:
    std::vector<std::unique_ptr<MemoryBlock>> m_buffers;
};
