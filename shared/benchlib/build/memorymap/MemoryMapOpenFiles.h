#pragma once

#include <QString>

class MemoryMap;

/// The memory maps and section placements that have been read, kept until they change.
class MemoryMapOpenFiles {
public:
    /// The map of the file, read again if a file or the arguments have changed; null if it can't be
    /// read. It is valid until the next call with that path.
    static MemoryMap* getMemoryMapFile(const QString& path, const QString& macros, bool preprocess);
    /// Forgets all files.
    static void clear();
};
