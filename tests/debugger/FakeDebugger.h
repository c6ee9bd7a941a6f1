#pragma once

#include "debugger/expressions/ParserException.h"
#include "debugger/expressions/TOBFExpressionEvaluator.h"
#include "objfile/query/SymbolicDebug.h"

#include <array>
#include <vector>

/// What a value is, for comparison in tables: its digits, then "s", "u", "f" or "b" with its size;
/// a string in quotes.
inline std::string describe(const ExpressionType& located)
{
    const ExpressionType value = located.resolved();
    const std::string size = std::to_string(value.getSizeInBytes());
    switch (value.getType()) {
    case ExpressionType::Boolean: return value.getBoolean() ? "true" : "false";
    case ExpressionType::SignedInteger: return std::to_string(value.getInteger()) + " s" + size;
    case ExpressionType::UnsignedInteger: return std::to_string(value.getUInteger()) + " u" + size;
    case ExpressionType::String: return '"' + value.getString().toStdString() + '"';
    case ExpressionType::Floating: return value.toStr(10).toStdString() + " f" + size;
    default: return "(undefined)";
    }
}

/// The value of an expression, or the message of its failure.
inline std::string evaluated(ExpressionParser& parser, const std::string& text)
{
    try {
        return describe(parser.parseAndEvaluate(text.c_str()));
    } catch (const ParserException& failure) {
        return failure.getCause().toStdString();
    }
}

/// A stopped target with a program: four memories, sixteen registers, and a note of what was read.
class FakeDebugger : public TOBFExpressionEvaluator {
public:
    using Memory = std::vector<unsigned char>;
    static constexpr unsigned MemorySize = 0x10000;
    struct Access {
        unsigned address;
        unsigned size;
        friend bool operator==(const Access&, const Access&) = default;
    };

    explicit FakeDebugger(const SymbolicDebug& debug) : m_debug(debug)
    {
        for (Memory& memory : memories)
            memory.resize(MemorySize);
    }

    void setWord(unsigned address, unsigned value, int memory = DebugMarkerType::Data)
    {
        memories[static_cast<std::size_t>(memory)][address] = static_cast<unsigned char>(value);
        memories[static_cast<std::size_t>(memory)][address + 1] =
            static_cast<unsigned char>(value >> 8);
    }
    unsigned word(unsigned address, int memory = DebugMarkerType::Data) const
    {
        const Memory& bytes = memories[static_cast<std::size_t>(memory)];
        return bytes[address] | static_cast<unsigned>(bytes[address + 1]) << 8;
    }

    using TOBFExpressionEvaluator::getRegister;

    void readMemory(unsigned address, unsigned size, unsigned char* buffer) override
    {
        reads.push_back({address, size});
        move(DebugMarkerType::Data, address, size, buffer);
    }
    void writeMemory(unsigned address, unsigned size, const unsigned char* buffer) override
    {
        writes.push_back({address, size});
        store(DebugMarkerType::Data, address, size, buffer);
    }
    void readCodeMemory(unsigned address, unsigned size, unsigned char* buffer) override
    {
        move(DebugMarkerType::Code, address, size, buffer);
    }
    void writeCodeMemory(unsigned address, unsigned size, const unsigned char* buffer) override
    {
        store(DebugMarkerType::Code, address, size, buffer);
    }
    void readEepromMemory(unsigned address, unsigned size, unsigned char* buffer) override
    {
        move(DebugMarkerType::Eeprom, address, size, buffer);
    }
    void writeEepromMemory(unsigned address, unsigned size, const unsigned char* buffer) override
    {
        store(DebugMarkerType::Eeprom, address, size, buffer);
    }
    void readPeripheralMemory(unsigned address, unsigned size, unsigned char* buffer) override
    {
        move(DebugMarkerType::Peripheral, address, size, buffer);
    }
    void writePeripheralMemory(unsigned address, unsigned size,
                               const unsigned char* buffer) override
    {
        store(DebugMarkerType::Peripheral, address, size, buffer);
    }
    unsigned long long getRegister(unsigned number) override { return registers.at(number); }
    unsigned getRegisterLength(unsigned) override { return registerLength; }
    void setRegister(unsigned number, unsigned long long value) override
    {
        registers.at(number) = value;
    }

    int registerNameToNumber(const QString& name) override
    {
        for (unsigned i = 0; i < registers.size(); ++i)
            if (registerNumberToName(i) == name)
                return static_cast<int>(i);
        return -1;
    }
    QString registerNumberToName(unsigned number) override
    {
        static constexpr const char* special[] = {"PC", "SP", "SR"};
        if (number < 3)
            return QString::fromLatin1(special[number]);
        return number < registers.size() ? u'R' + QString::number(number) : QString();
    }
    TOBFSymbol* getSymbol(const char* name) override
    {
        const QString text = QString::fromUtf8(name);
        TOBFSymbol* symbol = m_debug.findScopedSymbol(text, static_cast<int>(registers[0]));
        if (symbol == nullptr)
            symbol = m_debug.findModuleSymbol(text);
        return symbol != nullptr ? symbol : m_debug.findGlobalSymbol(text);
    }
    TOBFType* getNamedType(const char* name) override
    {
        return m_debug.findNamedType(QString::fromUtf8(name));
    }
    unsigned getSPValue(unsigned number) override
    {
        return static_cast<unsigned>(registers.at(number % registers.size()));
    }
    int getSPAdjustment() override { return stackAdjustment; }

    std::array<Memory, 4> memories; ///< by the kind of location
    std::array<unsigned long long, 16> registers{};
    unsigned registerLength = 2;
    int stackAdjustment = 0;
    std::vector<Access> reads; ///< of data memory
    std::vector<Access> writes;

private:
    void move(int memory, unsigned address, unsigned size, unsigned char* buffer)
    {
        for (unsigned i = 0; i < size; ++i)
            buffer[i] = memories[static_cast<std::size_t>(memory)][(address + i) % MemorySize];
    }
    void store(int memory, unsigned address, unsigned size, const unsigned char* buffer)
    {
        for (unsigned i = 0; i < size; ++i)
            memories[static_cast<std::size_t>(memory)][(address + i) % MemorySize] = buffer[i];
    }

    const SymbolicDebug& m_debug;
};
