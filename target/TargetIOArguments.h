#pragma once

#include "target/TargetMemoryInterface.h"

#include <cstdint>
#include <string>

/// Walks the arguments of a request, or of one of its formats, in target memory: integers and
/// pointers of one memory word, `long` of four bytes, 64-bit integers and doubles of eight. A bad
/// address reads as what the memory answers for it.
class TargetIOArguments {
public:
    TargetIOArguments(TargetMemoryInterface& memory, std::uint32_t cursor)
        : m_memory(&memory),
          m_cursor(cursor)
    {
    }

    /// Whether `getDoubleArg` finds a 4-byte float.
    void setSingleFloats(bool single) { m_singleFloats = single; }

    std::int64_t getIntArg();
    std::uint64_t getUnsignedArg() { return take(m_memory->wordLength()); }
    std::uint32_t getPtrArg() { return static_cast<std::uint32_t>(getUnsignedArg()); }
    std::int64_t getLongArg() { return static_cast<std::int32_t>(take(4)); }
    std::int64_t getLongLongArg() { return static_cast<std::int64_t>(take(8)); }
    double getDoubleArg();

    TargetMemoryInterface& memory() { return *m_memory; }

private:
    std::uint64_t take(unsigned size);

    TargetMemoryInterface* m_memory;
    std::uint32_t m_cursor;
    bool m_singleFloats = false;
};

/// The string at an address up to its zero byte, read in steps of 16 bytes and cut at 1023.
std::string readTargetString(TargetMemoryInterface& memory, std::uint32_t address);
