// An archive's directory and members, and the compressed wrapper, from arbitrary bytes.

#include "packages/archive/Archive2.h"
#include "packages/archive/CompressedFile.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // What Qt says of each broken stream would drown a finding.
    [[maybe_unused]] static const auto previous =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    if (size > 0) {
        std::FILE* file = fmemopen(const_cast<std::uint8_t*>(data), size, "rb");
        Archive2 archive;
        archive.open(file, "archive");
        std::vector<unsigned char> bytes;
        for (const ArchiveChunk2& chunk : archive.members())
            archive.readMember(chunk, bytes);
    }
    QByteArray original;
    QTx::decompressBytes(
        QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)), original);
    return 0;
}
