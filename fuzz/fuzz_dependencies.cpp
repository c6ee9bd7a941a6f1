// Arbitrary files of dependencies.

#include "build/system/DependencyCache.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    DependencyCache cache;
    QStringList files;
    if (cache.addBytes(bytes))
        cache.find(QStringLiteral("a"), 0, files);
    return 0;
}
