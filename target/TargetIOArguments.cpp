#include "target/TargetIOArguments.h"

#include <bit>
#include <cstring>

namespace {

constexpr unsigned longestString = 1024;
constexpr unsigned stringStep = 16;

} // namespace

std::int64_t TargetIOArguments::getIntArg()
{
    const std::uint64_t value = getUnsignedArg();
    return m_memory->wordLength() == 2 ? std::int64_t{static_cast<std::int16_t>(value)}
                                       : std::int64_t{static_cast<std::int32_t>(value)};
}

double TargetIOArguments::getDoubleArg()
{
    if (m_singleFloats)
        return std::bit_cast<float>(static_cast<std::uint32_t>(take(4)));
    return std::bit_cast<double>(take(8));
}

std::uint64_t TargetIOArguments::take(unsigned size)
{
    const std::uint64_t value = m_memory->peekNumber(m_cursor, size);
    m_cursor += size;
    return value;
}

std::string readTargetString(TargetMemoryInterface& memory, std::uint32_t address)
{
    char buffer[longestString];
    for (unsigned offset = 0; offset < longestString; offset += stringStep) {
        memory.peekBytes(address + offset, stringStep,
                         reinterpret_cast<unsigned char*>(buffer + offset));
        if (std::memchr(buffer + offset, 0, stringStep) != nullptr)
            return buffer;
    }
    buffer[longestString - 1] = 0;
    return buffer;
}
