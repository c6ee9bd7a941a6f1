// Each load-file reader on arbitrary bytes; the first byte picks the format.

#include "base/HException.h"
#include "objfile/loadfiles/LoadFileFactory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <memory>
#include <string>

namespace {

constexpr const char* Types[] = {"ihex", "srec", "tihex", "hex", "bin"};

void read(const char* path, const char* type)
{
    try {
        const std::unique_ptr<LoadFileInterface> file(
            LoadFileFactory::instance()->create(path, type));
        file->setLoadAddress(0xFFFFFFF0);
        AddressRanges ranges;
        file->loadFileSections().getSectionAddressRanges(ranges);
        file->sortLoadFileSections();
        file->makeContiguous(0xFF);
    } catch (const HException&) {
        // The message for a malformed file.
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const int file = memfd_create("load-file", 0);
    const bool written = ::write(file, data + 1, size - 1) == static_cast<ssize_t>(size - 1);
    if (written)
        read(("/proc/self/fd/" + std::to_string(file)).c_str(), Types[data[0] % std::size(Types)]);
    close(file);
    return 0;
}
