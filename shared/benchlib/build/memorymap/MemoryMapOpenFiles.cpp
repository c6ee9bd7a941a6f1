#include "build/memorymap/MemoryMapOpenFiles.h"

#include "base/Path.h"
#include "build/memorymap/MemoryMap.h"

#include <map>

namespace {

/// By normalised path; a map knows its macros.
std::map<QString, std::unique_ptr<MemoryMap>> openFiles;

} // namespace

MemoryMap* MemoryMapOpenFiles::getMemoryMapFile(const QString& path, const QString& macros,
                                                bool preprocess)
{
    const QString key = Path(path).osPath();
    const auto found = openFiles.find(key);
    if (found != openFiles.end()) {
        MemoryMap* open = found->second.get();
        if (open->macros() == macros && open->preprocess() == preprocess && open->upToDate())
            return open;
        openFiles.erase(found);
    }
    auto map = std::make_unique<MemoryMap>();
    if (!map->load(key, macros, preprocess))
        return nullptr;
    return (openFiles[key] = std::move(map)).get();
}

void MemoryMapOpenFiles::clear() { openFiles.clear(); }
