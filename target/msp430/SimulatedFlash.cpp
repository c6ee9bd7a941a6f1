#include "target/msp430/SimulatedFlash.h"

namespace {

constexpr unsigned char ErasedByte = 0xFF;

} // namespace

void SimulatedFlash::eraseBytes(unsigned address, unsigned length, unsigned* erasedStart,
                                unsigned* erasedLength)
{
    memsetBytes(address, length, ErasedByte);
    TargetMemoryInterface::eraseBytes(address, length, erasedStart, erasedLength);
}

void SimulatedFlash::eraseAll()
{
    for (const auto& [first, last] : flashRanges())
        memsetBytes(first, last - first + 1, ErasedByte);
}
