// Memory maps, with their addresses and register expressions.

#include "build/memorymap/MemoryMap.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    MemoryMap map;
    if (!map.loadFromString(
            QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size))))
        return 0;
    for (const MemoryMapElement* element : map.getAllElements())
        element->getRegisterExpression();
    map.getSegments(true);
    return 0;
}
