#include "objfile/loadfiles/LoadFileFactory.h"

#include "objfile/loadfiles/BinaryLoadFile.h"
#include "objfile/loadfiles/HexLoadFile.h"
#include "objfile/loadfiles/IntelHexLoadFile.h"
#include "objfile/loadfiles/SRecordLoadFile.h"
#include "objfile/loadfiles/TIHexLoadFile.h"

#include <string_view>

namespace {

struct Ending {
    const char* lower;
    const char* upper;
    const char* type;
};

constexpr Ending Endings[] = {
    {".bin", ".BIN", "bin"},  {".rom", ".ROM", "bin"},   {".hex", ".HEX", "ihex"},
    {".lst", ".LST", "hex"},  {".txt", ".TXT", "tihex"}, {".srec", ".SREC", "srec"},
    {".s19", ".S19", "srec"},
};

template <typename File> LoadFileInterface* make(const char* path) { return new File(path); }

struct Maker {
    const char* type;
    LoadFileInterface* (*make)(const char* path);
};

constexpr Maker Makers[] = {
    {"bin", make<BinaryLoadFile>},  {"ihex", make<IntelHexLoadFile>},
    {"tihex", make<TIHexLoadFile>}, {"srec", make<SRecordLoadFile>},
    {"hex", make<HexLoadFile>},
};

} // namespace

LoadFileFactory::LoadFileFactory()
    : m_types{{"bin", "*.bin *.rom", "Binary"},
              {"ihex", "*.hex", "Intel Hex"},
              {"tihex", "*.txt", "TI Hex"},
              {"srec", "*.s19 *.srec", "Motorola S-Record"},
              {"hex", "*.lst", "Hex"}}
{
}

LoadFileInterface* LoadFileFactory::create(const char* path, const char* type)
{
    for (const Maker& maker : Makers)
        if (type != nullptr && std::string_view(type) == maker.type)
            return maker.make(path);
    return nullptr;
}

void LoadFileFactory::destroy(LoadFileInterface* loadFile) { delete loadFile; }

const char* LoadFileFactory::detect(const char* path)
{
    const std::string_view name(path);
    for (const Ending& ending : Endings)
        if (name.ends_with(ending.lower) || name.ends_with(ending.upper))
            return ending.type;
    return nullptr;
}
