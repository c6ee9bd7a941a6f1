// Our XML documents: what is read can be written and read again, and soon doesn't change any more.

#include "base/XMLDocument.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    XMLDocument document;
    if (!document.loadFromBytes(
            QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size))))
        return 0;
    XMLDocument second;
    XMLDocument third;
    if (!second.loadFromBytes(document.toBytes(2)) || !third.loadFromBytes(second.toBytes(2))
        || third.toBytes(2) != second.toBytes(2))
        std::abort();
    return 0;
}
