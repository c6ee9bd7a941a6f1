// The header maker on arbitrary memory map files.

#include "base/HException.h"
#include "toolchain/tools/MemoryMapHeader.h"

#include <sys/mman.h>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const int file = memfd_create("memory-map", 0);
    const bool written = ::write(file, data, size) == static_cast<ssize_t>(size);
    Diagnostics diagnostics("kmh", [](const std::string&) {});
    MemoryMapHeader header(diagnostics);
    try {
        if (written)
            header.read("/proc/self/fd/" + std::to_string(file));
        header.text("map.xml", "map.h");
    } catch (const HException&) {
    } catch (const FatalDiagnostic&) {
    }
    close(file);
    return 0;
}
