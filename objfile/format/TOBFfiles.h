#pragma once

#include "base/Path.h"

#include <cstdint>
#include <list>
#include <memory>

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

    /// The index of a file, made when it is first asked for, with a reference to it and its module;
    /// throws as above, and null for a file without a module.
    static SymbolicDebug* getSymbolicDebug(const Path& path);
    static void release(SymbolicDebug* debug);

private:
    struct Record {
        Record(const Path& path, std::int64_t modified, TOBFModule* module);
        ~Record();

        Path path;
        std::int64_t modified; ///< nanoseconds since 1970
        TOBFModule* module;
        std::unique_ptr<SymbolicDebug> debug;
        int moduleReferences = 1;
        int debugReferences = 0;
    };
    static std::list<Record> s_records;
};
