// The linker over an object file from outside, beside a good one that refers to it.

#include "base/HException.h"
#include "toolchain/common/TemporaryFile.h"
#include "toolchain/kld/Kld.h"

#include <cstdint>
#include <fstream>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const TemporaryFile object(".kvo");
    static const TemporaryFile executable(".kvx");
    std::ofstream(object.path(), std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    const std::vector<std::string> words = {object.path(),
                                            "-o",
                                            executable.path(),
                                            "-TCODE,CONST=4000-ffe0",
                                            "-TIDATA0,UDATA0=200-2a00",
                                            "-TINTVEC=ffe0-fffd",
                                            "-TRESET=fffe-ffff",
                                            "-Kmain",
                                            "-Oph",
                                            "-Ojt",
                                            "-Otm",
                                            "-HCODE=crc16",
                                            "-g"};
    Diagnostics diagnostics("kld", [](const std::string&) {});
    try {
        kld(words, diagnostics);
    } catch (const HException&) {
    } catch (const FatalDiagnostic&) {
    }
    return 0;
}
