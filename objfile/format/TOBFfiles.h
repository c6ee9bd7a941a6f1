#pragma once

#include "base/Path.h"

#include <cstdint>
#include <list>

class SymbolicDebug;
class TOBFModule;

/// The process-wide cache of object files that have been read, counted by reference. A file that
/// has changed on disk is read anew; the old module stays for those who hold it.
class TOBFfiles {
public:
    /// Throws HException with "Can't access " and the path if there is no such file, and what the
    /// reader throws. A file without a module gives null, and holds no reference.
    static TOBFModule* getModule(const Path& path);
    static void release(TOBFModule* module);

private:
    struct Record {
        Path path;
        std::int64_t modified = 0; ///< nanoseconds since 1970
        TOBFModule* module = nullptr;
        SymbolicDebug* debug = nullptr;
        int moduleReferences = 0;
        int debugReferences = 0;
    };
    static std::list<Record> s_records;
};
